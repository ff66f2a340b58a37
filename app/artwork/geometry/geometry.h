// Points between 16.16 and double, and what becomes of segments and styles under a matrix.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <span>

namespace corvane {

RealPoint realPoint(Point);
RealMatrix realMatrix(const Matrix&);
/// Rounded to nearest, halves away from 0; what does not fit becomes the nearest that does.
Fixed fixedNumber(double);
Point fixedPoint(RealPoint);
Matrix fixedMatrix(const RealMatrix&);
/// `scale` times the length. What was more than 0 stays so.
Fixed scaledLength(Fixed, double scale);

void transform(std::span<Segment>, const RealMatrix&);
/// What the matrix does to letters on a path that it turns: it neither moves nor turns them. Exact
/// where all directions are stretched alike.
RealMatrix withoutTurn(const RealMatrix&);
/// The style with line width and dashes scaled in that way.
PathStyle scaled(PathStyle, double scale);

} // namespace corvane
