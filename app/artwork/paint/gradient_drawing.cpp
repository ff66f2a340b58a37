#include "app/artwork/paint/gradient_drawing.h"

#include "app/artwork/geometry/area.h"
#include "app/artwork/geometry/geometry.h"
#include "app/artwork/paint/gradient_ramp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>
#include <vector>

namespace corvane {

namespace {

/// Narrower bands than these are not seen, nor wanted. Points.
constexpr double leastBand = 0.1;
constexpr double mostBands = 16384;

/// How far a radial gradient repeats.
constexpr double mostTurns = 1024;

/// Part of the difference of the radii by which the centres may differ, so that every circle has
/// the next smaller one inside.
constexpr double mostShift = 0.999;

/// Of a circle by four curves: the control points' distance from the anchors, in radii.
constexpr double curveReach = 0.5522847498307936;

/// Coordinates beyond this cannot be said in 16.16.
constexpr double farthest = 32767;

class Painter {
public:
    Painter(const Area& area, const GradientRamp& ramp, const DrawingProcedures& draw)
        : area_(area), ramp_(ramp), draw_(draw) {}

    const Area& area() const { return area_; }

    void fillArea(const RampColour& colour) const { fill(area_.corners(), colour); }

    void fill(const Polygon& polygon, const RampColour& colour) const {
        if (polygon.size() < 3) {
            return;
        }
        ramp_.setColour(draw_, colour);
        draw_.beginFill();
        const Point start = fixedPoint(polygon.front());
        draw_.moveTo(&start);
        for (const RealPoint& corner : std::span(polygon).subspan(1)) {
            const Point next = fixedPoint(corner);
            draw_.lineTo(&next);
        }
        draw_.endFill();
    }

    /// `anchors` of a closed curve with the control points behind and before each of them.
    void fillCurves(const std::array<RealPoint, 12>& points, const RampColour& colour) const {
        ramp_.setColour(draw_, colour);
        draw_.beginFill();
        std::array<Point, 12> at;
        std::ranges::transform(points, at.begin(), fixedPoint);
        draw_.moveTo(&at[0]);
        for (std::size_t i = 0; i < at.size(); i += 3) {
            draw_.curveTo(&at[i + 1], &at[i + 2], &at[(i + 3) % at.size()]);
        }
        draw_.endFill();
    }

private:
    const Area& area_;
    const GradientRamp& ramp_;
    const DrawingProcedures& draw_;
};

/// `points`: how long the way from 0 to 1 is.
double leastWidth(const Gradient& gradient, double from, double to, double points) {
    const double varied =
        gradient.spread == GradientSpread::pad ? std::min(to - from, 1.0) : to - from;
    return std::max(leastBand / points, varied / mostBands);
}

void drawLinear(const Gradient& gradient, const RealMatrix& back, const GradientRamp& ramp,
                const Painter& painter) {
    const double dx = gradient.x2 - gradient.x1;
    const double dy = gradient.y2 - gradient.y1;
    const double square = dx * dx + dy * dy;
    // How far along the line a point of the art lies: 0 at its start, 1 at its end.
    const HalfPlane along{(back.a * dx + back.b * dy) / square,
                          (back.c * dx + back.d * dy) / square,
                          ((back.tx - gradient.x1) * dx + (back.ty - gradient.y1) * dy) / square};
    const auto [from, to] = painter.area().range(along);
    const double points = 1 / std::hypot(along.x, along.y);
    if (!(square > 0) || !std::isfinite(from) || !std::isfinite(to) || !std::isfinite(points)) {
        painter.fillArea(ramp.last());
        return;
    }
    const std::vector<Band> bands = ramp.bands(from, to, leastWidth(gradient, from, to, points));
    painter.fillArea(bands.front().colour);
    for (const Band& band : std::span(bands).subspan(1)) {
        painter.fill(cut(painter.area().corners(), {along.x, along.y, along.offset - band.start}),
                     band.colour);
    }
}

/// Circles from the first to the last and beyond, each within the next.
class Circles {
public:
    explicit Circles(const Gradient& gradient)
        : first_{gradient.x1, gradient.y1}, shift_{gradient.x2 - gradient.x1,
                                                   gradient.y2 - gradient.y1},
          radius_(gradient.r1), growth_(gradient.r2 - gradient.r1) {
        const double distance = std::hypot(shift_.x, shift_.y);
        if (distance > growth_ * mostShift) {
            const double part = growth_ * mostShift / distance;
            shift_ = {shift_.x * part, shift_.y * part};
            first_ = {gradient.x2 - shift_.x, gradient.y2 - shift_.y};
        }
    }

    bool nested() const { return growth_ > 0; }
    double apex() const { return -radius_ / growth_; } ///< where the radius is 0
    RealPoint centre(double at) const {
        return {first_.x + at * shift_.x, first_.y + at * shift_.y};
    }
    double radius(double at) const { return radius_ + at * growth_; }
    /// By how much the circles' farthest sides move from 0 to 1.
    double stride() const { return growth_ + std::hypot(shift_.x, shift_.y); }

    /// On which circle a point lies.
    double at(RealPoint point) const {
        const double x = point.x - first_.x;
        const double y = point.y - first_.y;
        const double a = growth_ * growth_ - shift_.x * shift_.x - shift_.y * shift_.y;
        const double b = x * shift_.x + y * shift_.y + radius_ * growth_;
        const double c = x * x + y * y - radius_ * radius_;
        return (std::sqrt(std::max(0.0, b * b + a * c)) - b) / a;
    }

private:
    RealPoint first_;
    RealPoint shift_;
    double radius_;
    double growth_;
};

/// The smallest circle that touches the line from one point to the other. Circles are convex.
double nearest(const Circles& circles, const RealMatrix& back, RealPoint one, RealPoint other) {
    constexpr int steps = 60;
    const auto at = [&](double part) {
        return circles.at(
            transform(back, {one.x + part * (other.x - one.x), one.y + part * (other.y - one.y)}));
    };
    double low = 0;
    double high = 1;
    for (int step = 0; step < steps; ++step) {
        const double third = (high - low) / 3;
        if (at(low + third) < at(high - third)) {
            high -= third;
        } else {
            low += third;
        }
    }
    return at(low);
}

/// A circle as its four curves, in the coordinates of the art.
std::array<RealPoint, 12> curvesOf(const RealMatrix& matrix, RealPoint centre, double radius) {
    constexpr double k = curveReach;
    constexpr std::array<RealPoint, 12> unit{{{1, 0},
                                              {1, k},
                                              {k, 1},
                                              {0, 1},
                                              {-k, 1},
                                              {-1, k},
                                              {-1, 0},
                                              {-1, -k},
                                              {-k, -1},
                                              {0, -1},
                                              {k, -1},
                                              {1, -k}}};
    std::array<RealPoint, 12> points;
    std::ranges::transform(unit, points.begin(), [&](RealPoint at) {
        return transform(matrix, {centre.x + radius * at.x, centre.y + radius * at.y});
    });
    return points;
}

/// A circle as a polygon, for one that is too large for curves in 16.16.
Polygon polygonOf(const RealMatrix& matrix, RealPoint centre, double radius) {
    constexpr double tolerance = 0.05; // points
    constexpr double mostCorners = 2048;
    const double size = radius * largestStretch(matrix);
    const double corners = std::clamp(
        std::ceil(std::numbers::pi * std::sqrt(size / (2 * tolerance))), 16.0, mostCorners);
    Polygon polygon;
    const int count = static_cast<int>(corners);
    polygon.reserve(static_cast<std::size_t>(count));
    for (int corner = 0; corner < count; ++corner) {
        const double turn = 2 * std::numbers::pi * corner / corners;
        polygon.push_back(transform(
            matrix, {centre.x + radius * std::cos(turn), centre.y + radius * std::sin(turn)}));
    }
    return polygon;
}

void fillCircle(const RealMatrix& matrix, RealPoint centre, double radius, const Painter& painter,
                const RampColour& colour) {
    const std::array<RealPoint, 12> curves = curvesOf(matrix, centre, radius);
    const bool sayable = std::ranges::all_of(curves, [](RealPoint at) {
        return std::abs(at.x) < farthest && std::abs(at.y) < farthest;
    });
    if (sayable) {
        painter.fillCurves(curves, colour);
    } else {
        painter.fill(painter.area().within(polygonOf(matrix, centre, radius)), colour);
    }
}

void drawRadial(const Gradient& gradient, const RealMatrix& back, const GradientRamp& ramp,
                const Painter& painter) {
    const Circles circles(gradient);
    const Polygon corners = painter.area().corners();
    double from = std::numeric_limits<double>::infinity();
    double to = -from;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        from = std::min(from, nearest(circles, back, corners[i], corners[(i + 1) % 4]));
        to = std::max(to, circles.at(transform(back, corners[i])));
    }
    if (circles.nested() &&
        painter.area().contains(transform(gradient.matrix, circles.centre(circles.apex())))) {
        from = circles.apex();
    }
    if (!circles.nested() || !std::isfinite(from) || !std::isfinite(to)) {
        painter.fillArea(ramp.last());
        return;
    }
    const bool endless = gradient.spread != GradientSpread::pad && to - from > mostTurns;
    const double end = endless ? from + mostTurns : to;
    std::vector<Band> bands = ramp.bands(
        from, end,
        leastWidth(gradient, from, end, circles.stride() * largestStretch(gradient.matrix)));
    if (endless) {
        bands.push_back({end, ramp.mean()});
    }
    painter.fillArea(bands.back().colour);
    for (std::size_t i = bands.size() - 1; i > 0; --i) {
        const double at = bands[i].start;
        if (circles.radius(at) > 0) {
            fillCircle(gradient.matrix, circles.centre(at), circles.radius(at), painter,
                       bands[i - 1].colour);
        }
    }
}

} // namespace

void drawGradient(const Gradient& gradient, const Rect& bounds, const DrawingProcedures& draw) {
    const std::optional<RealMatrix> back = inverse(gradient.matrix);
    if (!back) {
        return;
    }
    const Area area(bounds);
    const GradientRamp ramp(gradient, draw.setRGB != nullptr);
    const Painter painter(area, ramp, draw);
    if (gradient.radial) {
        drawRadial(gradient, *back, ramp, painter);
    } else {
        drawLinear(gradient, *back, ramp, painter);
    }
}

} // namespace corvane
