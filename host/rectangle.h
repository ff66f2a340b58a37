// Which closed paths are rectangles along the axes.
#pragma once

#include "host/artwork.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

namespace corvane {

/// The rectangle that the segments of a closed path draw: four corners, or five of which the last
/// is the first. Nothing where they draw something else.
inline std::optional<Rect> rectangleOf(std::span<const Segment> corners) {
    if (corners.size() == 5 && corners[4].anchor == corners[0].anchor) {
        corners = corners.first(4);
    }
    if (corners.size() != 4) {
        return std::nullopt;
    }
    const bool firstIsLevel = corners[0].anchor.y == corners[1].anchor.y;
    for (std::size_t i = 0; i < 4; ++i) {
        const Segment& from = corners[i];
        const Segment& to = corners[(i + 1) % 4];
        const bool isStraight = from.out == from.anchor && to.in == to.anchor;
        // Sides along the x axis and the y axis take turns.
        const bool isLevel = from.anchor.y == to.anchor.y;
        const bool isUpright = from.anchor.x == to.anchor.x;
        if (!isStraight || !(firstIsLevel == (i % 2 == 0) ? isLevel : isUpright)) {
            return std::nullopt;
        }
    }
    const Point& a = corners[0].anchor;
    const Point& b = corners[2].anchor;
    return Rect{.left = std::min(a.x, b.x),
                .top = std::max(a.y, b.y),
                .right = std::max(a.x, b.x),
                .bottom = std::min(a.y, b.y)};
}

} // namespace corvane
