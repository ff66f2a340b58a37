// What an object looks like at first sight, for finding equal ones.
#pragma once

#include "host/artwork.h"

#include <cstddef>
#include <cstdint>

namespace corvane {

/// A look with its points rounded to cells.
struct LookCells {
    std::int32_t anchors = 0;
    std::int64_t firstX = 0;
    std::int64_t firstY = 0;
    std::int64_t lastX = 0;
    std::int64_t lastY = 0;
    friend bool operator==(const LookCells&, const LookCells&) = default;

    struct Hash {
        std::size_t operator()(const LookCells& cells) const;
    };
};

struct Look {
    /// Half a point: far more than an editor's rounding.
    static constexpr Fixed cell = fixedOne / 2;
    /// What a point may lie beside its cell and still be found.
    static constexpr Fixed room = cell / 8;

    std::int32_t anchors = 0;
    Point first;
    Point last;

    /// The cells of both points, moved by so much.
    LookCells cells(Fixed firstX, Fixed firstY, Fixed lastX, Fixed lastY) const;
};

Look lookOf(Art art);

} // namespace corvane
