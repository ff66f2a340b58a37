#include "app/artwork/geometry/area.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr double margin = 1; // points

double points(Fixed number) {
    return static_cast<double>(number) / fixedOne;
}

} // namespace

Polygon cut(const Polygon& polygon, const HalfPlane& plane) {
    Polygon left;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const RealPoint from = polygon[i];
        const RealPoint to = polygon[(i + 1) % polygon.size()];
        const double here = plane.at(from);
        const double there = plane.at(to);
        if (here >= 0) {
            left.push_back(from);
        }
        if ((here >= 0) != (there >= 0)) {
            const double part = here / (here - there);
            left.push_back({from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)});
        }
    }
    return left;
}

Area::Area(const Rect& bounds)
    : left_(points(bounds.left) - margin), bottom_(points(bounds.bottom) - margin),
      right_(points(bounds.right) + margin), top_(points(bounds.top) + margin) {}

Polygon Area::corners() const {
    return {{left_, bottom_}, {right_, bottom_}, {right_, top_}, {left_, top_}};
}

bool Area::contains(RealPoint point) const {
    return point.x >= left_ && point.x <= right_ && point.y >= bottom_ && point.y <= top_;
}

std::pair<double, double> Area::range(const HalfPlane& value) const {
    double least = value.at({left_, bottom_});
    double most = least;
    for (const RealPoint corner : corners()) {
        least = std::min(least, value.at(corner));
        most = std::max(most, value.at(corner));
    }
    return {least, most};
}

Polygon Area::within(const Polygon& polygon) const {
    Polygon left = polygon;
    for (const HalfPlane& side : {HalfPlane{1, 0, -left_}, HalfPlane{-1, 0, right_},
                                  HalfPlane{0, 1, -bottom_}, HalfPlane{0, -1, top_}}) {
        left = cut(left, side);
    }
    return left;
}

} // namespace corvane
