#include "writer/patch/compare/movement.h"

#include "reader/content/art.h"
#include "runtime/charged_list.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"
#include "writer/art/art_stack.h"
#include "writer/art/outline.h"
#include "writer/image/image_works.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

/// Points of the artboard that moved may miss the place where a matrix leads by so much.
constexpr double room = 1.0 / 64;

RealPoint difference(const RealPoint& a, const RealPoint& b) {
    return {a.x - b.x, a.y - b.y};
}

double area(const RealPoint& a, const RealPoint& b) {
    return a.x * b.y - a.y * b.x;
}

double length(const RealPoint& a) {
    return std::hypot(a.x, a.y);
}

/// The matrix under which the origin and the two vectors become those of `to`.
std::optional<RealMatrix> matrixBetween(const std::array<RealPoint, 3>& from,
                                        const std::array<RealPoint, 3>& to) {
    const RealMatrix ofFrom{from[1].x, from[1].y, from[2].x, from[2].y, from[0].x, from[0].y};
    const RealMatrix ofTo{to[1].x, to[1].y, to[2].x, to[2].y, to[0].x, to[0].y};
    const std::optional<RealMatrix> back = inverse(ofFrom);
    return back ? std::optional(multiply(*back, ofTo)) : std::nullopt;
}

bool leadsTo(const RealMatrix& matrix, std::span<const RealPoint> from,
             std::span<const RealPoint> to) {
    return std::ranges::equal(from, to, [&](const RealPoint& a, const RealPoint& b) {
        return length(difference(transform(matrix, a), b)) <= room;
    });
}

/// A number in steps, for which those beyond all pages count as one.
std::int64_t stepsOf(double number, double step) {
    constexpr double most = 1e12;
    return std::isfinite(number) ? std::llround(std::clamp(number / step, -most, most)) : 0;
}

} // namespace

MovementKey movementKey(const RealMatrix& movement) {
    constexpr double turn = 1e-4; // a twentieth of a point over a page
    constexpr double step = 0.05;
    return {stepsOf(movement.a, turn), stepsOf(movement.b, turn),  stepsOf(movement.c, turn),
            stepsOf(movement.d, turn), stepsOf(movement.tx, step), stepsOf(movement.ty, step)};
}

void addPoints(ChargedList<RealPoint>& points, Art art) {
    ArtStack pending;
    pending.push(art);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            continue;
        }
        switch (artKind(step.art)) {
        case ArtKind::group:
            pending.enter(firstChild(step.art), ArtStep::What::end);
            break;
        case ArtKind::placed: {
            const RealMatrix matrix = realMatrix(placedImage(step.art).matrix);
            for (const RealPoint& corner : unitSquare) {
                points.push(transform(matrix, corner));
            }
            break;
        }
        default:
            forEachSegment(step.art, [&](const Segment& segment) {
                for (const Point& point : {segment.anchor, segment.in, segment.out}) {
                    points.push({realFromFixed(point.x), realFromFixed(point.y)});
                }
            });
        }
    }
}

std::optional<RealMatrix> movementOf(Art was, Art is) {
    ChargedList<RealPoint> from;
    ChargedList<RealPoint> to;
    addPoints(from, was);
    addPoints(to, is);
    return movementBetween(from.items(), to.items());
}

std::optional<RealMatrix> movementBetween(std::span<const RealPoint> from,
                                          std::span<const RealPoint> to) {
    if (from.empty() || from.size() != to.size()) {
        return std::nullopt;
    }
    const RealPoint step = difference(to[0], from[0]);
    const RealMatrix moved{.tx = step.x, .ty = step.y};
    if (leadsTo(moved, from, to)) {
        return moved;
    }
    // The point farthest from the first, and the one farthest from the line through both.
    std::size_t far = 0;
    std::size_t wide = 0;
    const auto vector = [](std::span<const RealPoint> points, std::size_t i) {
        return difference(points[i], points[0]);
    };
    for (std::size_t i = 0; i < from.size(); ++i) {
        far = length(vector(from, i)) > length(vector(from, far)) ? i : far;
    }
    const auto widthOf = [&](std::size_t i) {
        return std::abs(area(vector(from, far), vector(from, i)));
    };
    for (std::size_t i = 0; i < from.size(); ++i) {
        wide = widthOf(i) > widthOf(wide) ? i : wide;
    }
    const auto frame = [&](std::span<const RealPoint> points) {
        return std::array{points[0], vector(points, far), vector(points, wide)};
    };
    const std::optional<RealMatrix> matrix = matrixBetween(frame(from), frame(to));
    return matrix && leadsTo(*matrix, from, to) ? matrix : std::nullopt;
}

} // namespace corvane
