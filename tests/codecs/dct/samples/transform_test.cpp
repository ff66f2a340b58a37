#include "codecs/dct/samples/transform.h"

#include "codecs/dct/samples/transform_kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace corvane {
namespace {

using Reals = std::array<double, dctBlockSize>;

double basis(std::size_t x, std::size_t u) {
    const double scale = u == 0 ? std::sqrt(0.125) : 0.5;
    return scale * std::cos((2 * static_cast<double>(x) + 1) * static_cast<double>(u) *
                            std::numbers::pi / 16);
}

/// The definition (ISO/IEC 10918-1, A.3.3), separated; forward or inverse.
Reals transformed(const Reals& from, bool forward) {
    Reals half{};
    Reals out{};
    for (std::size_t pass = 0; pass < 2; ++pass) {
        const Reals& in = pass == 0 ? from : half;
        Reals& to = pass == 0 ? half : out;
        for (std::size_t line = 0; line < 8; ++line) {
            for (std::size_t i = 0; i < 8; ++i) {
                double sum = 0;
                for (std::size_t k = 0; k < 8; ++k) {
                    sum += in[8 * line + k] * (forward ? basis(k, i) : basis(i, k));
                }
                to[8 * i + line] = sum;
            }
        }
    }
    return out;
}

/// The generator of IEEE Std 1180-1990, appendix A.
class Random1180 {
public:
    double within(int low, int high) {
        state_ = state_ * 1103515245 + 12345;
        const double z = static_cast<double>(state_ & 0x7FFFFFFE) / 0x7FFFFFFF;
        return std::floor(z * (low + high + 1)) - low;
    }

private:
    std::uint32_t state_ = 1;
};

DctMultipliers ones() {
    DctMultipliers multipliers;
    multipliers.values.fill(1);
    return multipliers;
}

TEST(DctTransform, InverseIsWithinTheLimitsOfIeee1180) {
    constexpr int blocks = 10000;
    for (const auto& [low, high] : {std::pair{256, 255}, {5, 5}, {300, 300}}) {
        for (const int sign : {1, -1}) {
            Random1180 random;
            Reals errors{};
            Reals squares{};
            double worst = 0;
            for (int i = 0; i < blocks; ++i) {
                Reals samples{};
                for (double& sample : samples) {
                    sample = sign * random.within(low, high);
                }
                Reals coefficients = transformed(samples, true);
                DctBlock block;
                for (std::size_t k = 0; k < dctBlockSize; ++k) {
                    coefficients[k] = std::clamp(std::round(coefficients[k]), -2048.0, 2047.0);
                    block.values[k] = static_cast<std::int16_t>(coefficients[k]);
                }
                const Reals wanted = transformed(coefficients, false);
                std::array<std::uint8_t, dctBlockSize> got{};
                DCTrev_transform(block, ones(), 63, got.data(), 8);
                for (std::size_t k = 0; k < dctBlockSize; ++k) {
                    // Samples of 8 bits, where the standard's test has 9 bits and a sign.
                    const double error =
                        got[k] - std::clamp(std::round(wanted[k]) + 128, 0.0, 255.0);
                    worst = std::max(worst, std::abs(error));
                    errors[k] += error / blocks;
                    squares[k] += error * error / blocks;
                }
            }
            double meanError = 0;
            double meanSquare = 0;
            for (std::size_t k = 0; k < dctBlockSize; ++k) {
                EXPECT_LE(std::abs(errors[k]), 0.015);
                EXPECT_LE(squares[k], 0.06);
                meanError += errors[k] / 64;
                meanSquare += squares[k] / 64;
            }
            EXPECT_LE(worst, 1);
            EXPECT_LE(std::abs(meanError), 0.0015);
            EXPECT_LE(meanSquare, 0.02);
        }
    }
}

TEST(DctTransform, ForwardAndQuantiserAreTheDefinitionRounded) {
    Random1180 random;
    for (const unsigned step : {1U, 2U, 3U, 7U, 16U, 103U, 255U}) {
        DctQuantiser quantiser;
        quantiser.fill(static_cast<std::uint16_t>(step));
        const DctDivisors divisors = DCTEScaleQT(quantiser);
        for (int i = 0; i < 300; ++i) {
            std::array<std::uint8_t, dctBlockSize> samples{};
            Reals centred{};
            for (std::size_t k = 0; k < dctBlockSize; ++k) {
                centred[k] =
                    i % 3 == 0 ? (random.within(0, 1) > 0 ? 127 : -128) : random.within(128, 127);
                samples[k] = static_cast<std::uint8_t>(centred[k] + 128);
            }
            const Reals wanted = transformed(centred, true);
            DctBlock block;
            const std::uint64_t nonzero = DCTfwd_transform(samples.data(), 8, divisors, block);
            for (std::size_t k = 0; k < dctBlockSize; ++k) {
                const std::int16_t got = block.values[k % 8 * 8 + k / 8];
                EXPECT_NEAR(got, wanted[k] / step, 0.5 + 0.6 / step);
                EXPECT_EQ((nonzero >> (k % 8 * 8 + k / 8) & 1U) != 0, got != 0);
            }
        }
    }
}

/// Vectors and their portable twin, on valid and on wild numbers.
TEST(DctTransform, EveryKernelGivesTheSameBits) {
    Random1180 random;
    for (int i = 0; i < 2000; ++i) {
        const int reach = i % 2 == 0 ? 32767 : 1000;
        DctBlock block;
        DctMultipliers multipliers;
        std::array<std::uint8_t, dctBlockSize> samples{};
        for (std::size_t k = 0; k < dctBlockSize; ++k) {
            block.values[k] = static_cast<std::int16_t>(random.within(reach, reach));
            multipliers.values[k] = static_cast<std::int16_t>(random.within(0, 255));
            samples[k] = static_cast<std::uint8_t>(random.within(0, 255));
        }
        std::array<std::uint8_t, dctBlockSize> a{};
        std::array<std::uint8_t, dctBlockSize> b{};
        DctKernel<DctVector>::inverse(block.values.data(), multipliers.values.data(), a.data(), 8);
        DctKernel<DctPortable>::inverse(block.values.data(), multipliers.values.data(), b.data(),
                                        8);
        ASSERT_EQ(a, b);
        // Zeros are left out of the reckoning where they are known.
        for (std::size_t k = 0; k < dctBlockSize; ++k) {
            block.values[k] = k % 8 < 4 && k < 32 ? block.values[k] : std::int16_t{0};
        }
        DctKernel<DctVector>::inverse(block.values.data(), multipliers.values.data(), a.data(), 8);
        DctKernel<DctVector>::inverse<true>(block.values.data(), multipliers.values.data(),
                                            b.data(), 8);
        ASSERT_EQ(a, b);
        DctKernel<DctPortable>::inverse<true>(block.values.data(), multipliers.values.data(),
                                              b.data(), 8);
        ASSERT_EQ(a, b);
        const DctDivisors divisors = DCTEScaleQT(i % 2 == 0 ? qluma : qkroma_ds);
        DctBlock one;
        const std::uint64_t mask = DCTfwd_transform(samples.data(), 8, divisors, one);
        DctBlock other;
        using Portable = DctKernel<DctPortable>;
        EXPECT_EQ(mask, Portable::quantise(Portable::forward(samples.data(), 8),
                                           divisors.reciprocal.values.data(),
                                           divisors.correction.values.data(),
                                           divisors.scale.values.data(), other.values.data()));
        ASSERT_EQ(one.values, other.values);
    }
}

TEST(DctTransform, FlatBlocksAreNotSpecial) {
    for (int dc = -2048; dc < 2048; ++dc) {
        DctBlock block;
        block.values[0] = static_cast<std::int16_t>(dc);
        std::array<std::uint8_t, dctBlockSize> quick{};
        std::array<std::uint8_t, dctBlockSize> full{};
        DCTrev_transform(block, ones(), 0, quick.data(), 8);
        DCTrev_transform(block, ones(), 63, full.data(), 8);
        ASSERT_EQ(quick, full) << dc;
    }
}

} // namespace
} // namespace corvane
