// Points between 16.16 and double, and what becomes of segments and styles under a matrix.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <span>

namespace corvane {

RealPoint realPoint(Point);
/// Rounded to nearest, halves away from 0; what does not fit becomes the nearest that does.
Point fixedPoint(RealPoint);

void transform(std::span<Segment>, const RealMatrix&);
/// The style with line width and dashes of `scale` times the length. What was more than 0 stays so.
PathStyle scaled(PathStyle, double scale);

} // namespace corvane
