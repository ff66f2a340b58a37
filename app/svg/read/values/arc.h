// Elliptical arcs as curves.
#pragma once

#include "app/svg/read/shape_builder.h"

namespace corvane {

/// The arc of path data (SVG 1.1, 8.3.8) from the builder's current point to `end`. `turn` is the
/// angle of the ellipse's x axis in degrees. Radii that are too small grow, as appendix F.6 says.
void drawArc(ShapeBuilder& shape, double radiusX, double radiusY, double turn, bool large,
             bool sweep, RealPoint end);

/// Part of an ellipse whose axes are upright, from the builder's current point, which lies on it at
/// angle `start`, over `sweep`, both in radians, to `end`, which lies there.
void drawEllipsePart(ShapeBuilder& shape, RealPoint centre, double radiusX, double radiusY,
                     double start, double sweep, RealPoint end);

} // namespace corvane
