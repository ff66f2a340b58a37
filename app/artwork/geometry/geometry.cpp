#include "app/artwork/geometry/geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane {

Fixed fixedNumber(double value) {
    constexpr double least = std::numeric_limits<Fixed>::min();
    constexpr double most = std::numeric_limits<Fixed>::max();
    const double units = std::round(value * fixedOne);
    return std::isnan(units) ? 0 : static_cast<Fixed>(std::clamp(units, least, most));
}

Fixed scaledLength(Fixed length, double scale) {
    const Fixed result = fixedNumber(static_cast<double>(length) / fixedOne * scale);
    return length > 0 ? std::max(result, 1) : result;
}

RealMatrix realMatrix(const Matrix& matrix) {
    constexpr double unit = fixedOne;
    return {matrix.a / unit, matrix.b / unit,  matrix.c / unit,
            matrix.d / unit, matrix.tx / unit, matrix.ty / unit};
}

Matrix fixedMatrix(const RealMatrix& matrix) {
    return {fixedNumber(matrix.a), fixedNumber(matrix.b),  fixedNumber(matrix.c),
            fixedNumber(matrix.d), fixedNumber(matrix.tx), fixedNumber(matrix.ty)};
}

RealPoint realPoint(Point point) {
    return {static_cast<double>(point.x) / fixedOne, static_cast<double>(point.y) / fixedOne};
}

Point fixedPoint(RealPoint at) {
    return {fixedNumber(at.x), fixedNumber(at.y)};
}

void transform(std::span<Segment> segments, const RealMatrix& map) {
    for (Segment& segment : segments) {
        for (Point* const point : {&segment.anchor, &segment.in, &segment.out}) {
            *point = fixedPoint(transform(map, realPoint(*point)));
        }
    }
}

RealMatrix withoutTurn(const RealMatrix& matrix) {
    const double along = std::hypot(matrix.a, matrix.b);
    if (!(along > 0)) {
        return {matrix.a, matrix.b, matrix.c, matrix.d, 0, 0};
    }
    return {
        along, 0, (matrix.c * matrix.a + matrix.d * matrix.b) / along, determinant(matrix) / along,
        0,     0};
}

PathStyle scaled(PathStyle style, double scale) {
    style.lineWidth = scaledLength(style.lineWidth, scale);
    style.dashPhase = scaledLength(style.dashPhase, scale);
    for (Fixed& length : style.dash) {
        length = scaledLength(length, scale);
    }
    return style;
}

} // namespace corvane
