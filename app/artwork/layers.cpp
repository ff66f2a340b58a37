#include "app/artwork/layers.h"

#include "app/artwork/error.h"

#include <utility>

namespace corvane {

namespace {

std::int64_t bytesOf(const LayerProperties& properties) {
    return static_cast<std::int64_t>(sizeof(Layers::Record) + properties.title.size());
}

} // namespace

std::size_t Layers::place(Layer layer) const {
    const auto number = static_cast<std::size_t>(layer);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such layer");
    }
    return number - 1;
}

void Layers::setProperties(Layer layer, LayerProperties properties) {
    Record& changed = records_[place(layer)];
    budget_->charge(bytesOf(properties));
    budget_->discharge(bytesOf(changed.properties));
    changed.properties = std::move(properties);
}

Layer Layers::addInFront(Art art, LayerProperties properties) {
    const Layer added = append(art, std::move(properties));
    if (first_ == Layer::null) {
        last_ = added;
    } else {
        records_[place(added)].behind = first_;
        records_[place(first_)].inFront = added;
    }
    return first_ = added;
}

Layer Layers::addBehind(Art art, LayerProperties properties) {
    const Layer added = append(art, std::move(properties));
    if (last_ == Layer::null) {
        first_ = added;
    } else {
        records_[place(added)].inFront = last_;
        records_[place(last_)].behind = added;
    }
    return last_ = added;
}

Layer Layers::append(Art art, LayerProperties properties) {
    const std::int64_t bytes = bytesOf(properties);
    budget_->charge(bytes);
    try {
        records_.push_back({std::move(properties), art, Layer::null, Layer::null});
    } catch (...) {
        budget_->discharge(bytes);
        throw;
    }
    return static_cast<Layer>(records_.size());
}

} // namespace corvane
