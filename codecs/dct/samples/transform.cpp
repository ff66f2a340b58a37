#include "codecs/dct/samples/transform.h"

#include "codecs/dct/samples/transform_kernel.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace corvane {

namespace {

using Kernel = DctKernel<DctVector>;

/// A block whose only coefficient is the first: the same rounding as in the two passes.
void flatBlock(std::int32_t dc, std::uint8_t* samples, std::size_t stride) {
    const auto level = std::clamp(((dc + 4) >> 3) + 128, 0, 255);
    for (std::size_t row = 0; row < 8; ++row) {
        std::memset(samples + row * stride, level, 8);
    }
}

/// Coefficients before this one, in the order of coding, lie in the first four of four rows.
constexpr std::size_t quarterEnd = 10;

std::int16_t word(std::uint32_t value) {
    return static_cast<std::int16_t>(value);
}

} // namespace

DctMultipliers dctMultipliers(const DctQuantiser& quantiser) {
    DctMultipliers out;
    for (std::size_t i = 0; i < dctBlockSize; ++i) {
        out.values[dctNaturalOrder[i]] = word(quantiser[i]);
    }
    return out;
}

void DCTrev_transform(const DctBlock& block, const DctMultipliers& multipliers, std::size_t last,
                      std::uint8_t* samples, std::size_t stride) {
    if (last == 0) {
        flatBlock(static_cast<std::int16_t>(block.values[0] * multipliers.values[0]), samples,
                  stride);
        return;
    }
    if (last < quarterEnd) {
        Kernel::inverse<true>(block.values.data(), multipliers.values.data(), samples, stride);
        return;
    }
    Kernel::inverse(block.values.data(), multipliers.values.data(), samples, stride);
}

DctDivisors DCTEScaleQT(const DctQuantiser& quantiser) {
    DctDivisors out;
    for (std::size_t i = 0; i < dctBlockSize; ++i) {
        // x / d as (x + correction) * reciprocal >> (16 + shift), exact for 16 bits; method: T.
        // Granlund, P. Montgomery, "Division by invariant integers using multiplication" (1994).
        const std::uint32_t divisor = std::uint32_t{quantiser[i]} * 8;
        std::uint32_t shift = static_cast<std::uint32_t>(std::bit_width(divisor)) - 1;
        std::uint32_t reciprocal = (1U << (16 + shift)) / divisor;
        const std::uint32_t remainder = (1U << (16 + shift)) % divisor;
        std::uint32_t correction = divisor / 2;
        if (remainder == 0) {
            reciprocal >>= 1;
            --shift;
        } else if (remainder <= divisor / 2) {
            ++correction;
        } else {
            ++reciprocal;
        }
        const std::size_t natural = dctNaturalOrder[i];
        const std::size_t place = natural % 8 * 8 + natural / 8;
        out.reciprocal.values[place] = word(reciprocal);
        out.correction.values[place] = word(correction);
        out.scale.values[place] = word(1U << (16 - shift));
    }
    return out;
}

std::uint64_t DCTfwd_transform(const std::uint8_t* samples, std::size_t stride,
                               const DctDivisors& divisors, DctBlock& block) {
    return Kernel::quantise(Kernel::forward(samples, stride), divisors.reciprocal.values.data(),
                            divisors.correction.values.data(), divisors.scale.values.data(),
                            block.values.data());
}

} // namespace corvane
