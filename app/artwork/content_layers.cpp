#include "app/artwork/content_layers.h"

#include "app/artwork/error.h"

namespace corvane {

namespace {

/// Gives each field that is as it was its new value.
void follow(ContentLayerFacts& facts, const ContentLayerFacts& was, const ContentLayerFacts& is) {
    if (facts.name == was.name) {
        facts.name = is.name;
    }
    if (facts.isVisible == was.isVisible) {
        facts.isVisible = is.isVisible;
    }
    if (facts.isLocked == was.isLocked) {
        facts.isLocked = is.isLocked;
    }
}

} // namespace

ContentLayerFacts ContentLayerTable::kept(ContentLayerFacts facts) {
    budget_->charge(static_cast<std::int64_t>(facts.name.size()));
    facts.name = names_.emplace_back(facts.name);
    return facts;
}

ContentLayer ContentLayerTable::append(const ContentLayerFacts& now,
                                       const ContentLayerFacts& opened) {
    budget_->charge(static_cast<std::int64_t>(sizeof(Record)));
    records_.push_back({kept(now), kept(opened)});
    const auto layer = static_cast<ContentLayer>(records_.size());
    if (now.object != 0) {
        byObject_.emplace(now.object, layer);
    }
    return layer;
}

ContentLayer ContentLayerTable::add(const ContentLayerFacts& ofFile) {
    const auto known = byObject_.find(ofFile.object);
    if (ofFile.object == 0 || known == byObject_.end()) {
        return append(ofFile, ofFile);
    }
    Record& record = records_[static_cast<std::size_t>(known->second) - 1];
    const ContentLayerFacts file = kept(ofFile);
    follow(record.facts, record.opened, file);
    record.opened = file;
    return known->second;
}

ContentLayer ContentLayerTable::addEdited(const ContentLayerFacts& now,
                                          const ContentLayerFacts& opened) {
    const auto known = byObject_.find(now.object);
    if (now.object == 0 || known == byObject_.end()) {
        return append(now, opened);
    }
    Record& record = records_[static_cast<std::size_t>(known->second) - 1];
    follow(record.facts, record.opened, kept(now));
    return known->second;
}

ContentLayerFacts ContentLayerTable::facts(ContentLayer layer) const {
    const auto number = static_cast<std::size_t>(layer);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such layer of optional content");
    }
    return records_[number - 1].facts;
}

} // namespace corvane
