// The soft masks of a document, each kept once for good.
#pragma once

#include "app/artwork/budget.h"
#include "host/appearance.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace corvane {

bool isOpacity(double number);

/// Handles are numbers from 1.
class MaskTable {
public:
    explicit MaskTable(ArtworkBudget& budget) : budget_(&budget) {}
    MaskTable(const MaskTable&) = delete;
    MaskTable& operator=(const MaskTable&) = delete;

    /// Throws `ArtworkError` where a value has no meaning, and past the budget.
    SoftMask add(const MaskFacts& facts);
    /// Throws `ArtworkError` where there is none.
    const MaskFacts& operator[](SoftMask mask) const;

private:
    struct Record {
        MaskFacts facts;
        std::vector<double> transfer;
    };

    ArtworkBudget* budget_;
    std::deque<Record> records_;
};

} // namespace corvane
