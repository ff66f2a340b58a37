// Rectangles with room for every sum and difference of 16.16 coordinates.
#pragma once

#include "host/artwork.h"

#include <algorithm>
#include <cstdint>

namespace corvane {

/// Points in 16.16, y up, in the coordinates of the art. Starts as nothing.
struct Extent {
    static constexpr std::int64_t far = std::int64_t{1} << 44;

    std::int64_t left = far;
    std::int64_t bottom = far;
    std::int64_t right = -far;
    std::int64_t top = -far;

    /// As far as any art can reach.
    static constexpr Extent everything() { return {-far, -far, far, far}; }

    /// Has no area.
    bool empty() const { return left >= right || bottom >= top; }
    bool contains(const Extent& inner) const {
        return left <= inner.left && bottom <= inner.bottom && right >= inner.right &&
               top >= inner.top;
    }
    void add(Point point) {
        left = std::min<std::int64_t>(left, point.x);
        right = std::max<std::int64_t>(right, point.x);
        bottom = std::min<std::int64_t>(bottom, point.y);
        top = std::max<std::int64_t>(top, point.y);
    }
    void add(const Extent& other) {
        left = std::min(left, other.left);
        bottom = std::min(bottom, other.bottom);
        right = std::max(right, other.right);
        top = std::max(top, other.top);
    }
    Extent within(const Extent& other) const {
        return {std::max(left, other.left), std::max(bottom, other.bottom),
                std::min(right, other.right), std::min(top, other.top)};
    }
    friend constexpr bool operator==(const Extent&, const Extent&) = default;
};

} // namespace corvane
