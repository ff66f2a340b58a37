// 16.16 arithmetic, matrices and rectangles as the host's slots answer them.
//
// Products and quotients are exact, then rounded to nearest (halves away from 0); what does not fit
// into 16.16 becomes the nearest number that does. A matrix turns, moves and grows in steps: each
// new step is applied after what the matrix did before.
#pragma once

#include "host/artwork.h"
#include "host/callbacks.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace corvane {

constexpr Fixed saturate(std::int64_t value) {
    return static_cast<Fixed>(std::clamp<std::int64_t>(value, std::numeric_limits<Fixed>::min(),
                                                       std::numeric_limits<Fixed>::max()));
}

namespace answer {

Fixed fixedMultiply(Fixed, Fixed);
/// By 0: the largest number of the dividend's sign.
Fixed fixedDivide(Fixed dividend, Fixed divisor);

/// A turn of 360 degrees is 2^32: angles wrap around as turns do, and right angles are exact.
Fixed degreesToAngle(Fixed degrees);

HostBoolean pointsEqual(const Point*, const Point*);
HostBoolean matricesEqual(const Matrix*, const Matrix*);
HostBoolean rectsEqual(const Rect*, const Rect*);

void setIdentityMatrix(Matrix*);
/// Sets the translation; the rest of the matrix stays.
void setMatrixTranslation(Matrix*, Fixed dx, Fixed dy);
void translateMatrix(Matrix*, Fixed dx, Fixed dy);
void scaleMatrix(Matrix*, Fixed sx, Fixed sy);
/// Counter-clockwise; by right angles without any rounding.
void rotateMatrix(Matrix*, Fixed angle);
/// `result` may be one of the others, as in `transformPoint`.
void multiplyMatrix(const Matrix* first, const Matrix* second, Matrix* result);
void transformPoint(const Matrix*, const Point*, Point* result);

void setRect(Rect*, Fixed left, Fixed top, Fixed right, Fixed bottom);
HostBoolean rectEmpty(const Rect*);
/// All zero where the two do not overlap.
void sectRect(const Rect*, const Rect*, Rect* result);

} // namespace answer
} // namespace corvane
