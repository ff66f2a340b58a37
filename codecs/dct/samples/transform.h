// The 8 by 8 discrete cosine transform, both directions, and what belongs to it: dequantisation,
// quantisation, the level shift and the clamping of samples (ISO/IEC 10918-1, A.3.3 and A.3.4).
#pragma once

#include "codecs/dct/tables.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

/// Coefficients of one block, row by row.
struct alignas(16) DctBlock {
    std::array<std::int16_t, dctBlockSize> values{};
};

/// A quantiser, row by row.
using DctMultipliers = DctBlock;

DctMultipliers dctMultipliers(const DctQuantiser& quantiser);

/// Coefficients times multipliers to 8 rows of 8 samples, `stride` apart. `last`: zigzag position
/// of the last coefficient that may differ from zero. Accuracy: within the limits of IEEE 1180.
void DCTrev_transform(const DctBlock& block, const DctMultipliers& multipliers, std::size_t last,
                      std::uint8_t* samples, std::size_t stride);

/// What divides by a quantiser with multiplications only. Column by column, as the forward
/// transform leaves its coefficients.
struct DctDivisors {
    DctBlock reciprocal, correction, scale;
};

/// Folds the factor of 8 that the forward transform leaves into a quantiser of 1 to 255.
DctDivisors DCTEScaleQT(const DctQuantiser& quantiser);

/// 8 rows of 8 samples to quantised coefficients, column by column. Bit i of the result: value i is
/// not zero.
std::uint64_t DCTfwd_transform(const std::uint8_t* samples, std::size_t stride,
                               const DctDivisors& divisors, DctBlock& block);

} // namespace corvane
