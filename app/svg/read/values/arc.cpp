#include "app/svg/read/values/arc.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane {

namespace {

/// Draws from `start` over `sweep` on the circle of radius 1, seen through `ellipse`, in steps of
/// at most a right angle. The last step ends at `end` exactly.
void drawUnitArc(ShapeBuilder& shape, const RealMatrix& ellipse, double start, double sweep,
                 RealPoint end) {
    constexpr double right = std::numbers::pi / 2;
    const int steps = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / right - 1e-9)));
    const double step = sweep / steps;
    const double handle = 4.0 / 3 * std::tan(step / 4);
    for (int i = 0; i < steps; ++i) {
        const double from = start + step * i;
        const double to = from + step;
        const RealPoint out = transform(ellipse, {std::cos(from) - handle * std::sin(from),
                                                  std::sin(from) + handle * std::cos(from)});
        const RealPoint in = transform(
            ellipse, {std::cos(to) + handle * std::sin(to), std::sin(to) - handle * std::cos(to)});
        shape.curveTo(out, in,
                      i + 1 == steps ? end : transform(ellipse, {std::cos(to), std::sin(to)}),
                      i > 0);
    }
}

} // namespace

void drawArc(ShapeBuilder& shape, double radiusX, double radiusY, double turn, bool large,
             bool sweep, RealPoint end) {
    const RealPoint start = shape.current();
    radiusX = std::abs(radiusX);
    radiusY = std::abs(radiusY);
    if (start.x == end.x && start.y == end.y) {
        return;
    }
    if (!(radiusX > 0 && radiusY > 0)) {
        shape.lineTo(end.x, end.y);
        return;
    }
    const double angle = turn * std::numbers::pi / 180;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    // Half the way between the points, in the ellipse's axes and radii.
    const double halfX = (start.x - end.x) / 2;
    const double halfY = (start.y - end.y) / 2;
    double x = (cosine * halfX + sine * halfY) / radiusX;
    double y = (-sine * halfX + cosine * halfY) / radiusY;
    const double reach = std::hypot(x, y);
    if (reach > 1) {
        radiusX *= reach;
        radiusY *= reach;
        x /= reach;
        y /= reach;
    }
    const double lengthSquared = x * x + y * y;
    double away = std::sqrt(std::max(0.0, 1 - lengthSquared) / lengthSquared);
    away = large == sweep ? -away : away;
    const double centreX = away * y;
    const double centreY = -away * x;
    const double from = std::atan2(y - centreY, x - centreX);
    double over = std::atan2(-y - centreY, -x - centreX) - from;
    if (sweep && over < 0) {
        over += 2 * std::numbers::pi;
    } else if (!sweep && over > 0) {
        over -= 2 * std::numbers::pi;
    }
    RealMatrix ellipse{cosine * radiusX, sine * radiusX, -sine * radiusY, cosine * radiusY, 0, 0};
    const RealPoint centre = transform(ellipse, {centreX, centreY});
    ellipse.tx = centre.x + (start.x + end.x) / 2;
    ellipse.ty = centre.y + (start.y + end.y) / 2;
    if (!isFinite(ellipse) || !std::isfinite(over)) {
        shape.lineTo(end.x, end.y);
        return;
    }
    drawUnitArc(shape, ellipse, from, over, end);
}

void drawEllipsePart(ShapeBuilder& shape, RealPoint centre, double radiusX, double radiusY,
                     double start, double sweep, RealPoint end) {
    drawUnitArc(shape, {radiusX, 0, 0, radiusY, centre.x, centre.y}, start, sweep, end);
}

} // namespace corvane
