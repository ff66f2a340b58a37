// How far art reaches, and which clips are rectangles.
#pragma once

#include "host/artwork.h"

#include <cstdint>
#include <optional>

namespace corvane {

/// In 16.16; wider than 32 bits, so that strokes at the edge fit.
struct ArtExtent {
    std::int64_t left = INT64_MAX;
    std::int64_t bottom = INT64_MAX;
    std::int64_t right = INT64_MIN;
    std::int64_t top = INT64_MIN;

    void add(const Point& point);
    void add(const ArtExtent& other);
    bool meets(const ArtExtent& other) const {
        return left <= other.right && bottom <= other.top && right >= other.left &&
               top >= other.bottom;
    }
    bool contains(const ArtExtent& other) const {
        return left <= other.left && bottom <= other.bottom && right >= other.right &&
               top >= other.top;
    }
};

/// All that a path or compound path may paint: control points, stroke width and miters included. Of
/// text nothing is known: it may reach anywhere.
ArtExtent extentOf(Art art);

/// The rectangle that a clip is, its sides along the axes; nothing where it has another form.
std::optional<ArtExtent> rectangleOf(Art clip);

} // namespace corvane
