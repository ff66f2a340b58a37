// The records in which gradients and patterns pass between host and plug-in.
//
// A matrix leads from the paint's own space to the coordinates of the art: points, y up.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <cstdint>
#include <span>

namespace corvane {

/// What a gradient is beyond its first and last stop.
enum class GradientSpread : std::uint8_t { pad = 0, reflect = 1, repeat = 2 };

struct GradientStop {
    double offset = 0;  ///< 0 to 1, none less than the one before
    Colour colour;      ///< gray or process
    double opacity = 1; ///< 0 to 1
    friend bool operator==(const GradientStop&, const GradientStop&) = default;
};

/// Linear: from (x1, y1) to (x2, y2). Radial: from the circle of radius `r1` about (x1, y1) to that
/// of `r2` about (x2, y2). A gradient that ends at its first or last circle or line has stops
/// without opacity there.
struct GradientFacts {
    bool isRadial = false;
    double x1 = 0;
    double y1 = 0;
    double r1 = 0;
    double x2 = 0;
    double y2 = 0;
    double r2 = 0;
    RealMatrix matrix;
    GradientSpread spread = GradientSpread::pad;
    std::span<const GradientStop> stops = {}; ///< at least one; lives as long as the document
};

/// The tile's art lies in pattern space, once; what leaves the cell is cut off. Cell (i, j) lies at
/// i times `stepX`, j times `stepY` from it.
struct PatternFacts {
    Art tile = Art::null; ///< a group that is in no layer
    double left = 0;      ///< the cell
    double bottom = 0;
    double right = 0;
    double top = 0;
    double stepX = 0; ///< more than 0
    double stepY = 0;
    RealMatrix matrix;
};

} // namespace corvane
