// Affine maps in double, and what becomes of points and styles under them.
#pragma once

#include "app/artwork/paint.h"
#include "host/artwork.h"

#include <optional>
#include <span>

namespace corvane {

/// A point in points, y up.
struct Position {
    double x = 0;
    double y = 0;
};

Position apply(const Affine&, Position);
Position position(Point);
/// Rounded to nearest, halves away from 0; what does not fit becomes the nearest that does.
Point fixedPoint(Position);

/// First the one, then the other.
Affine then(const Affine& first, const Affine& second);
/// Nothing where the map has no inverse, or none in finite numbers.
std::optional<Affine> inverse(const Affine&);

/// By how much lengths grow in the mean: the root of what areas grow by.
double meanStretch(const Affine&);
/// By how much a length grows at most.
double largestStretch(const Affine&);

void transform(std::span<Segment>, const Affine&);
/// The style with line width and dashes of `scale` times the length. What was more than 0 stays so.
PathStyle scaled(PathStyle, double scale);

} // namespace corvane
