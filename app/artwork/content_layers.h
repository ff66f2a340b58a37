// The layers of optional content that groups of a document show with.
#pragma once

#include "app/artwork/budget.h"
#include "host/structure.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>

namespace corvane {

/// Layers are added, never removed; so a handle is a place in the table, from 1.
class ContentLayerTable {
public:
    explicit ContentLayerTable(ArtworkBudget& budget) : budget_(&budget) {}

    /// One with the same object, if it has one, is the same layer; its facts are those of the
    /// first. Throws `ArtworkError` past the budget.
    ContentLayer add(const ContentLayerFacts&);
    /// Throws `ArtworkError` where the handle is not of this table.
    ContentLayerFacts facts(ContentLayer) const;
    std::size_t size() const { return records_.size(); }

private:
    struct Record {
        std::string name; ///< UTF-8
        ContentLayerFacts facts;
    };

    ArtworkBudget* budget_;
    std::deque<Record> records_; ///< names stay where they are
    std::unordered_map<std::int32_t, ContentLayer> byObject_;
};

} // namespace corvane
