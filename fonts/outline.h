// The shape of a glyph.
#pragma once

#include <cstdint>
#include <vector>

namespace corvane {

struct OutlinePoint {
    double x = 0;
    double y = 0;
    friend constexpr bool operator==(const OutlinePoint&, const OutlinePoint&) = default;
};

/// A straight line to `to`, or a cubic curve.
struct OutlineStep {
    bool isCurve = false;
    OutlinePoint first; ///< control points, of curves only
    OutlinePoint second;
    OutlinePoint to;
};

/// A closed contour; it ends in a line to `start` where the last step does not.
struct Contour {
    OutlinePoint start;
    std::vector<OutlineStep> steps;
};

/// In ems: 1.0 is the size of the font. The y axis points up.
using GlyphOutline = std::vector<Contour>;

} // namespace corvane
