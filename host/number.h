// Decimal text of 16.16 numbers: the shortest that reads back as the same number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace corvane {

/// Room that `writeNumber` needs: sign, ten digits, point, five digits.
inline constexpr std::size_t numberRoom = 17;

namespace detail {

constexpr std::array<char, 200> makeDigitPairs() {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}
inline constexpr std::array<char, 200> digitPairs = makeDigitPairs();

} // namespace detail

/// Writes a whole number in decimal and returns the end of the text.
inline char* writeWhole(char* out, std::uint32_t value) {
    char digits[10];
    char* first = digits + sizeof digits;
    while (value >= 100) {
        const std::size_t pair = 2 * static_cast<std::size_t>(value % 100);
        value /= 100;
        *--first = detail::digitPairs[pair + 1];
        *--first = detail::digitPairs[pair];
    }
    if (value >= 10) {
        const std::size_t pair = 2 * static_cast<std::size_t>(value);
        *--first = detail::digitPairs[pair + 1];
        *--first = detail::digitPairs[pair];
    } else {
        *--first = static_cast<char>('0' + value);
    }
    while (first != digits + sizeof digits) {
        *out++ = *first++;
    }
    return out;
}

/// Writes a 16.16 number (held in 64 bits, magnitude below 2^48, so that differences and sums of
/// coordinates fit) as a decimal of at most five digits after the point that, rounded to the
/// nearest 16.16 number, gives `value` again; no shorter one does. No exponent, no digit before the
/// point where that would be a lone 0 (".5"), "0" for nothing. Writes at most `numberRoom`
/// characters, no NUL, and returns the end of the text.
inline char* writeNumber(char* out, std::int64_t value) {
    std::uint64_t magnitude = static_cast<std::uint64_t>(value);
    if (value < 0) {
        *out++ = '-';
        magnitude = 0 - magnitude;
    }
    const auto whole = static_cast<std::uint32_t>(magnitude >> 16);
    auto rest = static_cast<std::uint32_t>(magnitude & 0xFFFF);
    if (whole != 0 || rest == 0) {
        out = writeWhole(out, whole);
    }
    if (rest == 0) {
        return out;
    }
    *out++ = '.';
    // `rest` is what the digits so far leave over, `reach` half a unit of 16.16, both in units of
    // the last digit's 2^-17. Five digits always suffice: half a unit of the fifth is 0.5e-5, less
    // than 2^-17. A digit never rounds up to ten: the shorter decimal would have done already.
    rest <<= 1;
    std::uint32_t reach = 1;
    for (;;) {
        rest *= 10;
        reach *= 10;
        const std::uint32_t digit = rest >> 17;
        rest &= 0x1FFFF;
        const bool up = rest > 0x10000;
        if ((up ? 0x20000 - rest : rest) < reach) {
            *out++ = static_cast<char>('0' + digit + (up ? 1 : 0));
            return out;
        }
        *out++ = static_cast<char>('0' + digit);
    }
}

/// The same as a string, where speed does not matter.
inline std::string numberText(std::int64_t value) {
    std::array<char, numberRoom> text;
    return {text.data(), writeNumber(text.data(), value)};
}

} // namespace corvane
