// The 8 by 8 transforms in either set of vector operations.
//
// Method: C. Loeffler, A. Ligtenberg, G. Moschytz, "Practical fast 1-D DCT algorithms with 11
// multiplications" (ICASSP 1989), its odd part written out as a 4 by 4 matrix whose rows are two
// sums of two products each. Constants have 13 bits behind the point; each pass gains a factor of
// the square root of 8. Between the passes two more bits are kept, so that 16 bits hold every value
// of valid data: 8 bits of sample, 3 of growth, 2 of precision and the sign.
#pragma once

#include "codecs/dct/samples/vector.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane {

template <class V>
struct DctKernel {
    using Words = typename V::Words;
    using Longs = typename V::Longs;
    using Rows = std::array<Words, 8>;
    /// Eight 32-bit numbers.
    struct Wide {
        Longs low, high;
    };

    static constexpr int precision = 13;
    static constexpr int between = 2; ///< bits kept between the passes

    /// Two rows, number by number side by side.
    struct Pair {
        Words low, high;
        Pair(Words a, Words b) : low(V::interleaveLow(a, b)), high(V::interleaveHigh(a, b)) {}
        /// a * first + b * second.
        Wide times(std::int16_t first, std::int16_t second) const {
            const Words factors = V::splatPair(first, second);
            return {V::multiplyPairs(low, factors), V::multiplyPairs(high, factors)};
        }
    };

    static Wide add(const Wide& a, const Wide& b) {
        return {V::addLongs(a.low, b.low), V::addLongs(a.high, b.high)};
    }
    static Wide subtract(const Wide& a, const Wide& b) {
        return {V::subtractLongs(a.low, b.low), V::subtractLongs(a.high, b.high)};
    }
    template <int shift>
    static Words rounded(const Wide& a) {
        const Longs half = V::splatLong(1 << (shift - 1));
        return V::narrow(V::template shiftLongsRight<shift>(V::addLongs(a.low, half)),
                         V::template shiftLongsRight<shift>(V::addLongs(a.high, half)));
    }

    [[gnu::always_inline]] static inline void transpose(Rows& rows) {
        Rows once;
        for (std::size_t i = 0; i < 4; ++i) {
            once[2 * i] = V::interleaveLow(rows[2 * i], rows[2 * i + 1]);
            once[2 * i + 1] = V::interleaveHigh(rows[2 * i], rows[2 * i + 1]);
        }
        Rows twice;
        for (std::size_t half = 0; half < 8; half += 4) {
            twice[half] = V::interleavePairsLow(once[half], once[half + 2]);
            twice[half + 1] = V::interleavePairsHigh(once[half], once[half + 2]);
            twice[half + 2] = V::interleavePairsLow(once[half + 1], once[half + 3]);
            twice[half + 3] = V::interleavePairsHigh(once[half + 1], once[half + 3]);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            rows[2 * i] = V::lowHalves(twice[i], twice[i + 4]);
            rows[2 * i + 1] = V::highHalves(twice[i], twice[i + 4]);
        }
    }

    template <int shift>
    [[gnu::always_inline]] static inline void inversePass(Rows& r) {
        const Pair ends(r[0], r[4]);
        const Pair middle(r[2], r[6]);
        const Wide sum = ends.times(1 << precision, 1 << precision);
        const Wide difference = ends.times(1 << precision, -(1 << precision));
        const Wide outer = middle.times(10703, 4433);
        const Wide inner = middle.times(4433, -10704);
        const std::array<Wide, 4> even{add(sum, outer), add(difference, inner),
                                       subtract(difference, inner), subtract(sum, outer)};
        const Pair a(r[1], r[3]);
        const Pair b(r[5], r[7]);
        const std::array<Wide, 4> odd{add(a.times(11363, 9633), b.times(6437, 2260)),
                                      add(a.times(9633, -2259), b.times(-11362, -6436)),
                                      add(a.times(6437, -11362), b.times(2261, 9633)),
                                      add(a.times(2260, -6436), b.times(9633, -11363))};
        for (std::size_t i = 0; i < 4; ++i) {
            r[i] = rounded<shift>(add(even[i], odd[i]));
            r[7 - i] = rounded<shift>(subtract(even[i], odd[i]));
        }
    }

    /// The same where the last four of the eight are zeros.
    template <int shift>
    [[gnu::always_inline]] static inline void inverseHalfPass(Rows& r) {
        const Pair even(r[0], r[2]);
        const Pair odd(r[1], r[3]);
        constexpr std::array<std::int16_t, 4> second{10703, 4433, -4433, -10703};
        constexpr std::array<std::array<std::int16_t, 2>, 4> both{
            {{11363, 9633}, {9633, -2259}, {6437, -11362}, {2260, -6436}}};
        for (std::size_t i = 0; i < 4; ++i) {
            const Wide a = even.times(1 << precision, second[i]);
            const Wide b = odd.times(both[i][0], both[i][1]);
            r[i] = rounded<shift>(add(a, b));
            r[7 - i] = rounded<shift>(subtract(a, b));
        }
    }

    /// Coefficients times `quantiser` (both row by row) to samples, rows `stride` apart. `quarter`:
    /// none but the first four of the first four rows differ from zero; the bits are the same.
    template <bool quarter = false>
    static void inverse(const std::int16_t* coefficients, const std::int16_t* quantiser,
                        std::uint8_t* samples, std::size_t stride) {
        Rows r{};
        for (std::size_t i = 0; i < (quarter ? 4 : 8); ++i) {
            r[i] = V::multiplyLow(V::load(coefficients + 8 * i), V::load(quantiser + 8 * i));
        }
        if constexpr (quarter) {
            inverseHalfPass<precision - between>(r);
            transpose(r);
            inverseHalfPass<precision + between + 3>(r);
        } else {
            inversePass<precision - between>(r);
            transpose(r);
            inversePass<precision + between + 3>(r);
        }
        transpose(r);
        const Words centre = V::splat(128);
        for (std::size_t i = 0; i < 8; i += 2) {
            std::array<std::uint8_t, 16> two;
            V::storeBytes(two.data(),
                          V::narrowBytes(V::add(r[i], centre), V::add(r[i + 1], centre)));
            std::memcpy(samples + i * stride, two.data(), 8);
            std::memcpy(samples + (i + 1) * stride, two.data() + 8, 8);
        }
    }

    template <bool first>
    [[gnu::always_inline]] static inline void forwardPass(Rows& r) {
        constexpr int shift = first ? precision - between : precision + between;
        std::array<Words, 4> sums;
        std::array<Words, 4> differences;
        for (std::size_t i = 0; i < 4; ++i) {
            sums[i] = V::add(r[i], r[7 - i]);
            differences[i] = V::subtract(r[i], r[7 - i]);
        }
        const Words outer = V::add(sums[0], sums[3]);
        const Words inner = V::add(sums[1], sums[2]);
        if constexpr (first) {
            r[0] = V::template shiftLeft<between>(V::add(outer, inner));
            r[4] = V::template shiftLeft<between>(V::subtract(outer, inner));
        } else {
            const Words half = V::splat(1 << (between - 1));
            r[0] = V::template shiftRight<between>(V::add(V::add(outer, inner), half));
            r[4] = V::template shiftRight<between>(V::add(V::subtract(outer, inner), half));
        }
        const Pair even(V::subtract(sums[1], sums[2]), V::subtract(sums[0], sums[3]));
        r[2] = rounded<shift>(even.times(4433, 10703));
        r[6] = rounded<shift>(even.times(-10704, 4433));
        const Pair a(differences[0], differences[1]);
        const Pair b(differences[2], differences[3]);
        r[1] = rounded<shift>(add(a.times(11363, 9633), b.times(6437, 2260)));
        r[3] = rounded<shift>(add(a.times(9633, -2259), b.times(-11362, -6436)));
        r[5] = rounded<shift>(add(a.times(6437, -11362), b.times(2261, 9633)));
        r[7] = rounded<shift>(add(a.times(2260, -6436), b.times(9633, -11363)));
    }

    /// Samples, rows `stride` apart, to 8 times their coefficients, column by column.
    [[gnu::always_inline]] static inline Rows forward(const std::uint8_t* samples,
                                                      std::size_t stride) {
        Rows r;
        const Words centre = V::splat(128);
        for (std::size_t i = 0; i < 8; ++i) {
            r[i] = V::subtract(V::loadBytes(samples + i * stride), centre);
        }
        forwardPass<true>(r);
        transpose(r);
        forwardPass<false>(r);
        return r;
    }

    /// Divides by the quantiser, halves away from zero, where `reciprocal`, `correction` and
    /// `scale` hold 64 numbers each in the order of `rows`. Bit i of the result: number i is not
    /// zero.
    static std::uint64_t quantise(const Rows& rows, const std::int16_t* reciprocal,
                                  const std::int16_t* correction, const std::int16_t* scale,
                                  std::int16_t* out) {
        std::uint64_t nonzero = 0;
        for (std::size_t i = 0; i < 8; ++i) {
            const Words sign = V::template shiftRight<15>(rows[i]);
            const Words magnitude = V::subtract(V::exclusiveOr(rows[i], sign), sign);
            Words quotient = V::add(magnitude, V::load(correction + 8 * i));
            quotient = V::multiplyHigh(quotient, V::load(reciprocal + 8 * i));
            quotient = V::multiplyHigh(quotient, V::load(scale + 8 * i));
            const Words value = V::subtract(V::exclusiveOr(quotient, sign), sign);
            V::store(out + 8 * i, value);
            nonzero |= static_cast<std::uint64_t>(~V::zeroMask(value) & 0xFFU) << (8 * i);
        }
        return nonzero;
    }
};

} // namespace corvane
