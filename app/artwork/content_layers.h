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

    /// A layer as the file has it. One with the same object, if it has one, is the same layer, and
    /// what the artwork changed of it stays. Throws `ArtworkError` past the budget.
    ContentLayer add(const ContentLayerFacts& ofFile);
    /// A layer as artwork has it, and as it was when the artwork was opened. Of several that are
    /// the same layer, what one of them changed counts.
    ContentLayer addEdited(const ContentLayerFacts& now, const ContentLayerFacts& opened);
    /// Throws `ArtworkError` where the handle is not of this table.
    ContentLayerFacts facts(ContentLayer) const;
    std::size_t size() const { return records_.size(); }

private:
    struct Record {
        ContentLayerFacts facts;
        ContentLayerFacts opened;
    };

    ContentLayer append(const ContentLayerFacts& now, const ContentLayerFacts& opened);
    ContentLayerFacts kept(ContentLayerFacts facts);

    ArtworkBudget* budget_;
    std::deque<Record> records_;
    std::deque<std::string> names_; ///< of the records; they stay where they are
    std::unordered_map<std::int32_t, ContentLayer> byObject_;
};

} // namespace corvane
