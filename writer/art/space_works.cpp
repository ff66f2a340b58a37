#include "writer/art/space_works.h"

#include <cmath>

namespace corvane {

namespace {

/// A billionth of an image or of a point is nothing, and shorter without.
RealMatrix rounded(const RealMatrix& matrix) {
    constexpr double steps = 1e9;
    const auto round = [](double value) { return std::round(value * steps) / steps; };
    return {round(matrix.a), round(matrix.b),  round(matrix.c),
            round(matrix.d), round(matrix.tx), round(matrix.ty)};
}

} // namespace

void spaceWorks(Walk& walk, const RealMatrix& matrix) {
    walk.text.addMatrix(withoutSignedZeros(rounded(matrix)));
    walk.text.add("cm\n");
}

} // namespace corvane
