// A rectangle to be covered, and the polygons that are left of others within it.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <utility>
#include <vector>

namespace corvane {

using Polygon = std::vector<RealPoint>;

/// Where `x` times x and `y` times y and `offset` add up to 0 or more.
struct HalfPlane {
    double x = 0;
    double y = 0;
    double offset = 0;
    double at(RealPoint point) const { return x * point.x + y * point.y + offset; }
};

/// The part of a polygon in the half plane. Exact for convex polygons.
Polygon cut(const Polygon&, const HalfPlane&);

class Area {
public:
    /// The rectangle and a point around it, so that the edges of a clip along it are covered whole.
    explicit Area(const Rect& bounds);

    Polygon corners() const;
    bool contains(RealPoint point) const;
    /// Smallest and largest value in the area.
    std::pair<double, double> range(const HalfPlane&) const;
    /// The part of a convex polygon in the area.
    Polygon within(const Polygon&) const;

private:
    double left_;
    double bottom_;
    double right_;
    double top_;
};

} // namespace corvane
