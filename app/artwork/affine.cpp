#include "app/artwork/affine.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane {

namespace {

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

} // namespace

Position apply(const Affine& map, Position at) {
    return {map.a * at.x + map.c * at.y + map.tx, map.b * at.x + map.d * at.y + map.ty};
}

Position position(Point point) {
    return {static_cast<double>(point.x) / fixedOne, static_cast<double>(point.y) / fixedOne};
}

Point fixedPoint(Position at) {
    return {fixedNumber(at.x), fixedNumber(at.y)};
}

Affine then(const Affine& first, const Affine& second) {
    const Position origin = apply(second, {first.tx, first.ty});
    return {second.a * first.a + second.c * first.b,
            second.b * first.a + second.d * first.b,
            second.a * first.c + second.c * first.d,
            second.b * first.c + second.d * first.d,
            origin.x,
            origin.y};
}

std::optional<Affine> inverse(const Affine& map) {
    const double area = map.a * map.d - map.b * map.c;
    const Affine back{map.d / area,
                      -map.b / area,
                      -map.c / area,
                      map.a / area,
                      (map.c * map.ty - map.d * map.tx) / area,
                      (map.b * map.tx - map.a * map.ty) / area};
    for (const double entry : {back.a, back.b, back.c, back.d, back.tx, back.ty}) {
        if (!std::isfinite(entry)) {
            return std::nullopt;
        }
    }
    return back;
}

double meanStretch(const Affine& map) {
    return std::sqrt(std::abs(map.a * map.d - map.b * map.c));
}

double largestStretch(const Affine& map) {
    const double sum = map.a * map.a + map.b * map.b + map.c * map.c + map.d * map.d;
    const double area = map.a * map.d - map.b * map.c;
    const double spread = std::sqrt(std::max(0.0, sum * sum - 4 * area * area));
    return std::sqrt((sum + spread) / 2);
}

void transform(std::span<Segment> segments, const Affine& map) {
    for (Segment& segment : segments) {
        for (Point* const point : {&segment.anchor, &segment.in, &segment.out}) {
            *point = fixedPoint(apply(map, position(*point)));
        }
    }
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
