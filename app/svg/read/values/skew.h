// What a matrix does to lengths in different directions.
#pragma once

#include "host/matrix.h"

#include <cmath>

namespace corvane {

/// By how much more lengths grow in one direction than in another: 1 where circles stay circles,
/// infinite where they become lines.
inline double unevenness(const RealMatrix& matrix) {
    const double sum = std::hypot(matrix.a + matrix.d, matrix.b - matrix.c);
    const double difference = std::hypot(matrix.a - matrix.d, matrix.b + matrix.c);
    return sum + difference == 0 ? 1 : (sum + difference) / std::abs(sum - difference);
}

} // namespace corvane
