// How far art reaches, and which clips are rectangles.
#pragma once

#include "host/artwork.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace corvane {

/// In 16.16; wider than 32 bits, so that strokes at the edge fit.
struct ArtExtent {
    std::int64_t left = INT64_MAX;
    std::int64_t bottom = INT64_MAX;
    std::int64_t right = INT64_MIN;
    std::int64_t top = INT64_MIN;

    static constexpr ArtExtent everything() { return {INT64_MIN, INT64_MIN, INT64_MAX, INT64_MAX}; }

    void add(const Point& point);
    void add(const ArtExtent& other);
    bool meets(const ArtExtent& other) const {
        return left <= other.right && bottom <= other.top && right >= other.left &&
               top >= other.bottom;
    }
    /// What of it lies in the other one.
    ArtExtent within(const ArtExtent& other) const {
        return {std::max(left, other.left), std::max(bottom, other.bottom),
                std::min(right, other.right), std::min(top, other.top)};
    }
    bool contains(const ArtExtent& other) const {
        return left <= other.left && bottom <= other.bottom && right >= other.right &&
               top >= other.top;
    }
};

/// All that a path or compound path may paint: control points, stroke width and miters included,
/// no wider than who writes the artwork as markup takes it to be. Of
/// text nothing is known: it may reach anywhere.
ArtExtent extentOf(Art art);

/// What is seen of the page.
ArtExtent extentOfPage();

/// The rectangle that a clip is, its sides along the axes; nothing where it has another form.
std::optional<ArtExtent> rectangleOf(Art clip);

} // namespace corvane
