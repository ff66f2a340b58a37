#include "writer/patch/compare/paint_comparison.h"

#include "runtime/callbacks.h"
#include "writer/patch/compare/comparison.h"
#include "writer/patch/compare/group_comparison.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

/// What editors' rounding may move a point of the artboard by, and a part of a gradient's length.
constexpr double pointRoom = 1.0 / 32;
constexpr double shareRoom = 1.0 / 500;

bool isNear(double a, double b, double room) {
    return std::abs(a - b) <= room;
}

bool isNear(RealPoint a, RealPoint b, double room) {
    return std::hypot(a.x - b.x, a.y - b.y) <= room;
}

bool sameStops(std::span<const GradientStop> was, std::span<const GradientStop> is) {
    return std::ranges::equal(was, is, [](const GradientStop& a, const GradientStop& b) {
        constexpr double opacityRoom = 1.0 / 200;
        return isNear(a.offset, b.offset, shareRoom) && isNear(a.opacity, b.opacity, opacityRoom) &&
               (a.opacity == 0 || sameColour(a.colour, b.colour));
    });
}

/// Where a point lies on the way from the first line of a linear gradient to its last.
double placeOf(const GradientFacts& gradient, const RealMatrix& back, RealPoint point) {
    const RealPoint p = transform(back, point);
    const double dx = gradient.x2 - gradient.x1;
    const double dy = gradient.y2 - gradient.y1;
    return ((p.x - gradient.x1) * dx + (p.y - gradient.y1) * dy) / (dx * dx + dy * dy);
}

bool sameLines(const GradientFacts& was, const GradientFacts& is) {
    const auto back = inverse(is.matrix);
    if (!back) {
        return false;
    }
    const RealPoint first = transform(was.matrix, {was.x1, was.y1});
    const RealPoint last = transform(was.matrix, {was.x2, was.y2});
    const RealPoint beside =
        transform(was.matrix, {was.x1 - (was.y2 - was.y1), was.y1 + (was.x2 - was.x1)});
    const double length = std::hypot(last.x - first.x, last.y - first.y);
    const double room = std::max(shareRoom, length > 0 ? pointRoom / length : 1);
    return isNear(placeOf(is, *back, first), 0, room) &&
           isNear(placeOf(is, *back, last), 1, room) && isNear(placeOf(is, *back, beside), 0, room);
}

/// Circles are the same in whatever space they lie: it may be turned.
bool sameCircles(const GradientFacts& was, const GradientFacts& is) {
    const auto shape = [](const GradientFacts& gradient) {
        const RealMatrix& m = gradient.matrix;
        const double square = gradient.r2 * gradient.r2;
        return std::array{square * (m.a * m.a + m.c * m.c), square * (m.a * m.b + m.c * m.d),
                          square * (m.b * m.b + m.d * m.d)};
    };
    const std::array a = shape(was);
    const std::array b = shape(is);
    const double size = std::sqrt(std::max(a[0], a[2]));
    const double room = std::max(pointRoom, size * shareRoom);
    const auto share = [](const GradientFacts& gradient) {
        return gradient.r2 > 0 ? gradient.r1 / gradient.r2 : 0;
    };
    const auto sameSquares = [&](double x, double y) { return isNear(x, y, 2 * size * room); };
    return isNear(transform(was.matrix, {was.x2, was.y2}), transform(is.matrix, {is.x2, is.y2}),
                  room) &&
           isNear(transform(was.matrix, {was.x1, was.y1}), transform(is.matrix, {is.x1, is.y1}),
                  room) &&
           std::ranges::equal(a, b, sameSquares) && isNear(share(was), share(is), shareRoom);
}

} // namespace

bool PaintComparison::same(const Colour& was, const Colour& is, const RealMatrix& movement) {
    if (was.kind != is.kind) {
        return false;
    }
    if (was.source == is.source && movement == RealMatrix()) {
        return true;
    }
    return was.kind == ColourKind::gradient ? sameGradient(was.source, is.source, movement)
                                            : samePattern(was.source, is.source, movement);
}

bool PaintComparison::sameGradient(PaintSource was, PaintSource is,
                                   const RealMatrix& movement) const {
    GradientFacts former;
    GradientFacts now;
    callHost(slot::getGradient, was, &former);
    callHost(slot::getGradient, is, &now);
    if (former.isRadial != now.isRadial || former.spread != now.spread ||
        !sameStops(former.stops, now.stops)) {
        return false;
    }
    former.matrix = multiply(former.matrix, movement);
    return former.isRadial ? sameCircles(former, now) : sameLines(former, now);
}

bool PaintComparison::samePattern(PaintSource was, PaintSource is, const RealMatrix& movement) {
    PatternFacts former;
    PatternFacts now;
    callHost(slot::getPattern, was, &former);
    callHost(slot::getPattern, is, &now);
    former.matrix = multiply(former.matrix, movement);
    const auto sameStep = [](double a, double b) {
        return isNear(a, b, std::max(a * shareRoom / 10, 1e-6));
    };
    if (!sameStep(former.stepX, now.stepX) || !sameStep(former.stepY, now.stepY)) {
        return false;
    }
    const auto corners = [](const PatternFacts& pattern) {
        return std::array{transform(pattern.matrix, {pattern.left, pattern.bottom}),
                          transform(pattern.matrix, {pattern.right, pattern.bottom}),
                          transform(pattern.matrix, {pattern.left, pattern.top})};
    };
    return std::ranges::equal(corners(former), corners(now),
                              [](RealPoint a, RealPoint b) { return isNear(a, b, pointRoom); }) &&
           sameTile(former.tile, now.tile);
}

bool PaintComparison::sameTile(Art was, Art is) {
    const auto [known, isNew] = tiles_.try_emplace({was, is}, false);
    if (isNew) {
        known->second = isSameGroup(was, is, *this);
    }
    return known->second;
}

} // namespace corvane
