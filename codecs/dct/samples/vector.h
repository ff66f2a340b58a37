// Eight 16-bit numbers at once: the few operations that the transform, the colour conversion and
// the upsampling are written in.
//
// The kernels are templates over one of two sets of operations: `DctSse2`, and `DctPortable`, which
// gives the same bits on any machine. `DctVector` is the best one that the machine is known to
// have.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace corvane {

struct DctPortable {
    using Words = std::array<std::int16_t, 8>;
    using Longs = std::array<std::int32_t, 4>;
    using Bytes = std::array<std::uint8_t, 16>;

    static std::int16_t wrap(std::int32_t value) { return static_cast<std::int16_t>(value); }
    static std::uint32_t bits(std::int32_t value) { return static_cast<std::uint32_t>(value); }
    template <class Narrow>
    static Narrow clamped(std::int32_t value) {
        return static_cast<Narrow>(std::clamp<std::int32_t>(
            value, std::numeric_limits<Narrow>::min(), std::numeric_limits<Narrow>::max()));
    }
    template <class Operation>
    static Words each(const Words& a, const Words& b, Operation operation) {
        Words out{};
        for (std::size_t i = 0; i < 8; ++i) {
            out[i] = wrap(operation(a[i], b[i]));
        }
        return out;
    }
    template <class Operation>
    static Longs eachLong(const Longs& a, const Longs& b, Operation operation) {
        Longs out{};
        for (std::size_t i = 0; i < 4; ++i) {
            out[i] = static_cast<std::int32_t>(operation(bits(a[i]), bits(b[i])));
        }
        return out;
    }

    static Words load(const std::int16_t* from) {
        Words out{};
        std::memcpy(out.data(), from, sizeof out);
        return out;
    }
    static void store(std::int16_t* to, const Words& a) { std::memcpy(to, a.data(), sizeof a); }
    static Words loadBytes(const std::uint8_t* from) {
        Words out{};
        std::copy_n(from, 8, out.begin());
        return out;
    }
    static Bytes loadAll(const std::uint8_t* from) {
        Bytes out{};
        std::memcpy(out.data(), from, sizeof out);
        return out;
    }
    /// Four pixels of three bytes as four of four; the last byte of each is of no account.
    static Bytes loadPixels(const std::uint8_t* from) {
        Bytes out{};
        for (std::size_t i = 0; i < 4; ++i) {
            std::memcpy(out.data() + 4 * i, from + 3 * i, 4);
        }
        return out;
    }
    static void storeBytes(std::uint8_t* to, const Bytes& a) {
        std::memcpy(to, a.data(), sizeof a);
    }
    /// The other way: four of four bytes as four of three. Writes 16 bytes, of which the last four
    /// are of no account.
    static void storePixels(std::uint8_t* to, const Words& a) {
        const Bytes four = std::bit_cast<Bytes>(a);
        Bytes out{};
        for (std::size_t i = 0; i < 12; ++i) {
            out[i] = four[i / 3 * 4 + i % 3];
        }
        storeBytes(to, out);
    }
    static void storeWords(std::uint8_t* to, const Words& a) {
        std::memcpy(to, a.data(), sizeof a);
    }
    static Words splat(std::int16_t value) {
        Words out{};
        out.fill(value);
        return out;
    }
    static Words splatPair(std::int16_t first, std::int16_t second) {
        return {first, second, first, second, first, second, first, second};
    }
    static Longs splatLong(std::int32_t value) { return {value, value, value, value}; }

    static Words add(const Words& a, const Words& b) {
        return each(a, b, [](int x, int y) { return x + y; });
    }
    static Words subtract(const Words& a, const Words& b) {
        return each(a, b, [](int x, int y) { return x - y; });
    }
    static Words multiplyLow(const Words& a, const Words& b) {
        return each(a, b, [](int x, int y) { return x * y; });
    }
    /// Upper halves of the products, both taken as unsigned.
    static Words multiplyHigh(const Words& a, const Words& b) {
        return each(a, b, [](int x, int y) {
            return static_cast<std::int32_t>((bits(x) & 0xFFFFU) * (bits(y) & 0xFFFFU) >> 16);
        });
    }
    /// The same of signed numbers.
    static Words multiplyHighSigned(const Words& a, const Words& b) {
        return each(a, b, [](int x, int y) { return x * y >> 16; });
    }
    static Words exclusiveOr(const Words& a, const Words& b) {
        return each(a, b, [](int x, int y) { return x ^ y; });
    }
    template <int count>
    static Words shiftLeft(const Words& a) {
        return each(a, a, [](int x, int) { return x << count; });
    }
    template <int count>
    static Words shiftRight(const Words& a) {
        return each(a, a, [](int x, int) { return x >> count; });
    }
    template <int count>
    static Words shiftRightUnsigned(const Words& a) {
        return each(a, a, [](int x, int) { return (x & 0xFFFF) >> count; });
    }
    static Words interleaveLow(const Words& a, const Words& b) {
        return {a[0], b[0], a[1], b[1], a[2], b[2], a[3], b[3]};
    }
    static Words interleaveHigh(const Words& a, const Words& b) {
        return {a[4], b[4], a[5], b[5], a[6], b[6], a[7], b[7]};
    }
    /// Pairs of 16-bit numbers moved as one.
    static Words interleavePairsLow(const Words& a, const Words& b) {
        return {a[0], a[1], b[0], b[1], a[2], a[3], b[2], b[3]};
    }
    static Words interleavePairsHigh(const Words& a, const Words& b) {
        return {a[4], a[5], b[4], b[5], a[6], a[7], b[6], b[7]};
    }
    static Words lowHalves(const Words& a, const Words& b) {
        return {a[0], a[1], a[2], a[3], b[0], b[1], b[2], b[3]};
    }
    static Words highHalves(const Words& a, const Words& b) {
        return {a[4], a[5], a[6], a[7], b[4], b[5], b[6], b[7]};
    }
    /// Sums of the products of neighbours.
    static Longs multiplyPairs(const Words& a, const Words& b) {
        Longs out{};
        for (std::size_t i = 0; i < 4; ++i) {
            out[i] = static_cast<std::int32_t>(bits(a[2 * i] * b[2 * i]) +
                                               bits(a[2 * i + 1] * b[2 * i + 1]));
        }
        return out;
    }
    static Longs addLongs(const Longs& a, const Longs& b) {
        return eachLong(a, b, [](std::uint32_t x, std::uint32_t y) { return x + y; });
    }
    static Longs subtractLongs(const Longs& a, const Longs& b) {
        return eachLong(a, b, [](std::uint32_t x, std::uint32_t y) { return x - y; });
    }
    template <int count>
    static Longs shiftLongsRight(const Longs& a) {
        return {a[0] >> count, a[1] >> count, a[2] >> count, a[3] >> count};
    }
    static Words narrow(const Longs& a, const Longs& b) {
        Words out{};
        for (std::size_t i = 0; i < 4; ++i) {
            out[i] = clamped<std::int16_t>(a[i]);
            out[i + 4] = clamped<std::int16_t>(b[i]);
        }
        return out;
    }
    static Bytes narrowBytes(const Words& a, const Words& b) {
        Bytes out{};
        for (std::size_t i = 0; i < 8; ++i) {
            out[i] = clamped<std::uint8_t>(a[i]);
            out[i + 8] = clamped<std::uint8_t>(b[i]);
        }
        return out;
    }
    static Bytes interleaveBytesLow(const Bytes& a, const Bytes& b) {
        Bytes out{};
        for (std::size_t i = 0; i < 8; ++i) {
            out[2 * i] = a[i];
            out[2 * i + 1] = b[i];
        }
        return out;
    }
    static Bytes interleaveBytesHigh(const Bytes& a, const Bytes& b) {
        Bytes out{};
        for (std::size_t i = 0; i < 8; ++i) {
            out[2 * i] = a[i + 8];
            out[2 * i + 1] = b[i + 8];
        }
        return out;
    }
    /// Pairs of bytes as they lie in memory, to be moved about and stored.
    static Words asWords(const Bytes& a) { return std::bit_cast<Words>(a); }
    static Words widenLow(const Bytes& a) {
        Words out{};
        std::copy_n(a.begin(), 8, out.begin());
        return out;
    }
    static Words widenHigh(const Bytes& a) {
        Words out{};
        std::copy_n(a.begin() + 8, 8, out.begin());
        return out;
    }
    /// Bit i: number i is zero.
    static unsigned zeroMask(const Words& a) {
        unsigned mask = 0;
        for (std::size_t i = 0; i < 8; ++i) {
            mask |= (a[i] == 0 ? 1U : 0U) << i;
        }
        return mask;
    }
};

#if defined(__SSE2__)
struct DctSse2 {
    /// A register that may stand in a template argument.
    struct Register {
        __m128i value;
        Register() = default;
        // NOLINTNEXTLINE(google-explicit-constructor): it is what it holds.
        Register(__m128i from) : value(from) {}
        // NOLINTNEXTLINE(google-explicit-constructor)
        operator __m128i() const { return value; }
    };
    using Words = Register;
    using Longs = Register;
    using Bytes = Register;

    static Words load(const std::int16_t* from) { return loadFrom(from); }
    static void store(std::int16_t* to, Words a) { std::memcpy(to, &a, sizeof a); }
    static Words loadBytes(const std::uint8_t* from) {
        std::int64_t eight = 0;
        std::memcpy(&eight, from, sizeof eight);
        return widenLow(_mm_cvtsi64_si128(eight));
    }
    static Bytes loadAll(const std::uint8_t* from) { return loadFrom(from); }
    static Bytes loadPixels(const std::uint8_t* from) {
        const auto pixel = [from](std::size_t i) {
            std::int32_t four = 0;
            std::memcpy(&four, from + 3 * i, sizeof four);
            return four;
        };
        return _mm_set_epi32(pixel(3), pixel(2), pixel(1), pixel(0));
    }
    static void storeBytes(std::uint8_t* to, Bytes a) { std::memcpy(to, &a, sizeof a); }
    static void storePixels(std::uint8_t* to, Words a) {
        // Within each half the second pixel moves down by one byte, then the upper half by two.
        const __m128i firsts = _mm_and_si128(a, _mm_set1_epi64x(0xFFFFFF));
        const __m128i seconds =
            _mm_and_si128(_mm_srli_epi64(a, 8), _mm_set1_epi64x(0xFFFFFF000000));
        const __m128i halves = _mm_or_si128(firsts, seconds);
        storeBytes(
            to, _mm_or_si128(_mm_move_epi64(halves), _mm_slli_si128(_mm_srli_si128(halves, 8), 6)));
    }
    static void storeWords(std::uint8_t* to, Words a) { std::memcpy(to, &a, sizeof a); }
    static Words splat(std::int16_t value) { return _mm_set1_epi16(value); }
    static Words splatPair(std::int16_t first, std::int16_t second) {
        return _mm_set_epi16(second, first, second, first, second, first, second, first);
    }
    static Longs splatLong(std::int32_t value) { return _mm_set1_epi32(value); }

    static Words add(Words a, Words b) { return _mm_add_epi16(a, b); }
    static Words subtract(Words a, Words b) { return _mm_sub_epi16(a, b); }
    static Words multiplyLow(Words a, Words b) { return _mm_mullo_epi16(a, b); }
    static Words multiplyHigh(Words a, Words b) { return _mm_mulhi_epu16(a, b); }
    static Words multiplyHighSigned(Words a, Words b) { return _mm_mulhi_epi16(a, b); }
    static Words exclusiveOr(Words a, Words b) { return _mm_xor_si128(a, b); }
    template <int count>
    static Words shiftLeft(Words a) {
        return _mm_slli_epi16(a, count);
    }
    template <int count>
    static Words shiftRight(Words a) {
        return _mm_srai_epi16(a, count);
    }
    template <int count>
    static Words shiftRightUnsigned(Words a) {
        return _mm_srli_epi16(a, count);
    }
    static Words interleaveLow(Words a, Words b) { return _mm_unpacklo_epi16(a, b); }
    static Words interleaveHigh(Words a, Words b) { return _mm_unpackhi_epi16(a, b); }
    static Words interleavePairsLow(Words a, Words b) { return _mm_unpacklo_epi32(a, b); }
    static Words interleavePairsHigh(Words a, Words b) { return _mm_unpackhi_epi32(a, b); }
    static Words lowHalves(Words a, Words b) { return _mm_unpacklo_epi64(a, b); }
    static Words highHalves(Words a, Words b) { return _mm_unpackhi_epi64(a, b); }
    static Longs multiplyPairs(Words a, Words b) { return _mm_madd_epi16(a, b); }
    static Longs addLongs(Longs a, Longs b) { return _mm_add_epi32(a, b); }
    static Longs subtractLongs(Longs a, Longs b) { return _mm_sub_epi32(a, b); }
    template <int count>
    static Longs shiftLongsRight(Longs a) {
        return _mm_srai_epi32(a, count);
    }
    static Words narrow(Longs a, Longs b) { return _mm_packs_epi32(a, b); }
    static Bytes narrowBytes(Words a, Words b) { return _mm_packus_epi16(a, b); }
    static Bytes interleaveBytesLow(Bytes a, Bytes b) { return _mm_unpacklo_epi8(a, b); }
    static Bytes interleaveBytesHigh(Bytes a, Bytes b) { return _mm_unpackhi_epi8(a, b); }
    static Words asWords(Bytes a) { return a; }
    static Words widenLow(Bytes a) { return _mm_unpacklo_epi8(a, _mm_setzero_si128()); }
    static Words widenHigh(Bytes a) { return _mm_unpackhi_epi8(a, _mm_setzero_si128()); }
    static unsigned zeroMask(Words a) {
        const __m128i zeros = _mm_cmpeq_epi16(a, _mm_setzero_si128());
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(zeros, zeros))) & 0xFFU;
    }

private:
    static Register loadFrom(const void* from) {
        Register out;
        std::memcpy(&out, from, sizeof out);
        return out;
    }
};
using DctVector = DctSse2;
#else
using DctVector = DctPortable;
#endif

} // namespace corvane
