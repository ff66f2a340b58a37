// The pen of a line that is drawn under a matrix.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <cmath>
#include <optional>

namespace corvane {

constexpr RealMatrix penMatrix(const Pen& pen) {
    return {pen.xx, pen.xy, pen.xy, pen.yy, 0, 0};
}

/// A pen, and by how much the lengths of a line grow.
struct StretchedPen {
    Pen pen;
    double stretch = 1;
};

/// What becomes of a line with a round pen. Nothing where no pen says it: the matrix makes lines of
/// circles, or nearly so.
inline std::optional<StretchedPen> penUnder(const RealMatrix& matrix) {
    constexpr double evenRatio = 1.001; // a thousandth between two directions is not seen
    constexpr double mostUneven = 1e4;  // the narrow side of any line is not seen then
    const double area = std::abs(determinant(matrix));
    const double most = largestStretch(matrix);
    if (!isFinite(matrix) || !std::isfinite(most) || most * most > mostUneven * area) {
        return std::nullopt;
    }
    if (most * most <= evenRatio * area) {
        return StretchedPen{{}, meanStretch(matrix)};
    }
    // The root of the matrix times its transposed one. Nine digits, and a stretch that is 1 but for
    // the last of them, make a pen that was written down come back as it was.
    constexpr double digits = 1e9;
    const double stretch = std::abs(most - 1) < 1e-6 ? 1 : most;
    const double trace =
        matrix.a * matrix.a + matrix.b * matrix.b + matrix.c * matrix.c + matrix.d * matrix.d;
    const double divisor = std::sqrt(trace + 2 * area) * stretch;
    const auto entry = [&](double product, double onDiagonal) {
        return std::round((product + onDiagonal) / divisor * digits) / digits + 0.0;
    };
    return StretchedPen{{entry(matrix.a * matrix.a + matrix.c * matrix.c, area),
                         entry(matrix.a * matrix.b + matrix.c * matrix.d, 0),
                         entry(matrix.b * matrix.b + matrix.d * matrix.d, area)},
                        stretch};
}

} // namespace corvane
