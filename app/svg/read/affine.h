// Arithmetic on `Affine`, the matrices of paint and of transforms.
#pragma once

#include "app/artwork/paint.h"

#include <cmath>

namespace corvane {

struct Location {
    double x = 0;
    double y = 0;
    friend constexpr bool operator==(const Location&, const Location&) = default;
};

inline Location applied(const Affine& matrix, double x, double y) {
    return {matrix.a * x + matrix.c * y + matrix.tx, matrix.b * x + matrix.d * y + matrix.ty};
}

/// `inner` first, then `outer`.
inline Affine product(const Affine& outer, const Affine& inner) {
    return {outer.a * inner.a + outer.c * inner.b,
            outer.b * inner.a + outer.d * inner.b,
            outer.a * inner.c + outer.c * inner.d,
            outer.b * inner.c + outer.d * inner.d,
            outer.a * inner.tx + outer.c * inner.ty + outer.tx,
            outer.b * inner.tx + outer.d * inner.ty + outer.ty};
}

inline double determinant(const Affine& matrix) {
    return matrix.a * matrix.d - matrix.b * matrix.c;
}

/// By how much lengths grow in the mean.
inline double meanScale(const Affine& matrix) {
    return std::sqrt(std::abs(determinant(matrix)));
}

/// By how much more lengths grow in one direction than in another: 1 where circles stay circles,
/// infinite where they become lines.
inline double unevenness(const Affine& matrix) {
    const double sum = std::hypot(matrix.a + matrix.d, matrix.b - matrix.c);
    const double difference = std::hypot(matrix.a - matrix.d, matrix.b + matrix.c);
    const double largest = sum + difference;
    const double smallest = std::abs(sum - difference);
    return largest == 0 ? 1 : largest / smallest;
}

inline bool isFinite(const Affine& matrix) {
    return std::isfinite(matrix.a) && std::isfinite(matrix.b) && std::isfinite(matrix.c) &&
           std::isfinite(matrix.d) && std::isfinite(matrix.tx) && std::isfinite(matrix.ty);
}

} // namespace corvane
