// Paint that is more than one colour: gradients, patterns, and colours with inks of their own.
//
// Geometry is in double, since it is multiplied by matrices before it is drawn. A matrix leads from
// the paint's own space to the coordinates of the art: points, y up.
#pragma once

#include "host/artwork.h"
#include "host/gradient.h"
#include "host/matrix.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

/// Linear: from (x1, y1) to (x2, y2). Radial: from the circle of radius `r1` about (x1, y1) to that
/// of `r2` about (x2, y2).
struct Gradient {
    bool radial = false;
    double x1 = 0;
    double y1 = 0;
    double r1 = 0;
    double x2 = 0;
    double y2 = 0;
    double r2 = 0;
    RealMatrix matrix;
    GradientSpread spread = GradientSpread::pad;
    std::vector<GradientStop> stops; ///< at least one
    friend bool operator==(const Gradient&, const Gradient&) = default;
};

/// The tile's art lies in pattern space, once; what leaves the cell is cut off. Cell (i, j) lies at
/// i times `stepX`, j times `stepY` from it.
struct Pattern {
    Art tile = Art::null; ///< a group that is in no layer
    double left = 0;      ///< the cell
    double bottom = 0;
    double right = 0;
    double top = 0;
    double stepX = 0; ///< more than 0
    double stepY = 0;
    RealMatrix matrix;
    friend bool operator==(const Pattern&, const Pattern&) = default;
};

/// A colour that is printed with its own ink, or with these amounts of process inks.
struct SpotColour {
    std::string name; ///< UTF-8
    std::array<Fixed, 4> process{};
    friend bool operator==(const SpotColour&, const SpotColour&) = default;
};

/// A colour that is printed with inks of its own, so much of each.
struct InkMixture {
    std::string names; ///< as `InkMixtureFacts::names`
    std::vector<Fixed> tints;
    Colour seen; ///< gray or process
    friend bool operator==(const InkMixture&, const InkMixture&) = default;
};

} // namespace corvane
