#include "app/artwork/content_layers.h"

#include "app/artwork/error.h"

namespace corvane {

ContentLayer ContentLayerTable::add(const ContentLayerFacts& facts) {
    if (const auto known = byObject_.find(facts.object);
        facts.object != 0 && known != byObject_.end()) {
        return known->second;
    }
    budget_->charge(static_cast<std::int64_t>(sizeof(Record) + facts.name.size()));
    Record& record = records_.emplace_back(std::string(facts.name), facts);
    record.facts.name = record.name;
    const auto layer = static_cast<ContentLayer>(records_.size());
    if (facts.object != 0) {
        byObject_.emplace(facts.object, layer);
    }
    return layer;
}

ContentLayerFacts ContentLayerTable::facts(ContentLayer layer) const {
    const auto number = static_cast<std::size_t>(layer);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such layer of optional content");
    }
    return records_[number - 1].facts;
}

} // namespace corvane
