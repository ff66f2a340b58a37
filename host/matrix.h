// Points and matrices in double, in which geometry is worked out before it is rounded to 16.16.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>

namespace corvane {

struct RealPoint {
    double x = 0;
    double y = 0;
    friend constexpr bool operator==(const RealPoint&, const RealPoint&) = default;
};

/// Maps (x, y) to (a x + c y + tx, b x + d y + ty).
struct RealMatrix {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double tx = 0;
    double ty = 0;
    friend constexpr bool operator==(const RealMatrix&, const RealMatrix&) = default;
};

constexpr RealPoint transform(const RealMatrix& matrix, RealPoint point) {
    return {matrix.a * point.x + matrix.c * point.y + matrix.tx,
            matrix.b * point.x + matrix.d * point.y + matrix.ty};
}

/// First the one, then the other.
constexpr RealMatrix multiply(const RealMatrix& first, const RealMatrix& second) {
    const RealPoint origin = transform(second, {first.tx, first.ty});
    return {.a = first.a * second.a + first.b * second.c,
            .b = first.a * second.b + first.b * second.d,
            .c = first.c * second.a + first.d * second.c,
            .d = first.c * second.b + first.d * second.d,
            .tx = origin.x,
            .ty = origin.y};
}

/// By how much areas grow; below 0 where the matrix mirrors.
constexpr double determinant(const RealMatrix& matrix) {
    return matrix.a * matrix.d - matrix.b * matrix.c;
}

inline bool isFinite(const RealMatrix& matrix) {
    return std::isfinite(matrix.a) && std::isfinite(matrix.b) && std::isfinite(matrix.c) &&
           std::isfinite(matrix.d) && std::isfinite(matrix.tx) && std::isfinite(matrix.ty);
}

/// Nothing where the matrix has no inverse, or none in finite numbers.
inline std::optional<RealMatrix> inverse(const RealMatrix& matrix) {
    const double area = determinant(matrix);
    const RealMatrix back{.a = matrix.d / area,
                          .b = -matrix.b / area,
                          .c = -matrix.c / area,
                          .d = matrix.a / area,
                          .tx = (matrix.c * matrix.ty - matrix.d * matrix.tx) / area,
                          .ty = (matrix.b * matrix.tx - matrix.a * matrix.ty) / area};
    return isFinite(back) ? std::optional(back) : std::nullopt;
}

/// The same without negative zeros, which would be written as such.
constexpr RealMatrix withoutSignedZeros(const RealMatrix& matrix) {
    return {matrix.a + 0.0, matrix.b + 0.0,  matrix.c + 0.0,
            matrix.d + 0.0, matrix.tx + 0.0, matrix.ty + 0.0};
}

/// By how much lengths grow in the mean: the root of what areas grow by.
inline double meanStretch(const RealMatrix& matrix) {
    return std::sqrt(std::abs(determinant(matrix)));
}

/// By how much a length grows at most.
inline double largestStretch(const RealMatrix& matrix) {
    const double sum =
        matrix.a * matrix.a + matrix.b * matrix.b + matrix.c * matrix.c + matrix.d * matrix.d;
    const double area = determinant(matrix);
    const double spread = std::sqrt(std::max(0.0, sum * sum - 4 * area * area));
    return std::sqrt((sum + spread) / 2);
}

} // namespace corvane
