#include "filters/token/number.h"

#include "filters/token/character.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Powers of ten that a double holds exactly.
constexpr auto powersOfTen = [] {
    std::array<double, 23> powers{};
    double power = 1;
    for (double& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}();

/// Digits that always fit 64 bits; further ones are beyond the precision of a double.
constexpr int mantissaDigits = 18;

struct Mantissa {
    std::uint64_t value = 0;
    int digits = 0;  ///< taken, leading zeros not counted
    int dropped = 0; ///< digits that found no room

    const char* take(const char* at) {
        for (; isDigit(*at); ++at) {
            if (digits < mantissaDigits) {
                value = value * 10 + static_cast<std::uint64_t>(*at - '0');
                digits += static_cast<int>(value != 0);
            } else {
                dropped = std::min(dropped + 1, 400);
            }
        }
        return at;
    }
};

/// `value` times ten to the power `scale`; exactly rounded for all numbers of up to 15 digits.
double scaled(std::uint64_t value, int scale) {
    auto result = static_cast<double>(value);
    constexpr int step = static_cast<int>(powersOfTen.size()) - 1;
    for (; scale < -step; scale += step) {
        result /= powersOfTen.back();
    }
    for (; scale > step; scale -= step) {
        result *= powersOfTen.back();
    }
    return scale < 0 ? result / powersOfTen[static_cast<std::size_t>(-scale)]
                     : result * powersOfTen[static_cast<std::size_t>(scale)];
}

} // namespace

const char* readNumber(const char* begin, Number& number) {
    const char* at = begin;
    bool negative = false;
    for (; characterClass(*at) == CharacterClass::sign; ++at) {
        negative = negative || *at == '-';
    }
    Mantissa mantissa;
    at = mantissa.take(at);
    int scale = mantissa.dropped;
    number.real = *at == '.';
    if (number.real) {
        const char* const fraction = at + 1;
        const int droppedBefore = mantissa.dropped;
        at = mantissa.take(fraction);
        const auto taken = (at - fraction) - (mantissa.dropped - droppedBefore);
        scale -= static_cast<int>(std::min<std::ptrdiff_t>(taken, 400));
    }
    // A sign inside a number ends its value; the digits behind it count for nothing.
    if (characterClass(*at) == CharacterClass::sign) {
        while (isDigit(*at) || characterClass(*at) == CharacterClass::sign) {
            ++at;
        }
    }
    const double magnitude = scaled(mantissa.value, scale);
    number.exact = negative ? -magnitude : magnitude;
    if (number.real) {
        number.fixed = fixedFromReal(number.exact);
    } else {
        number.integer = detail::truncated(number.exact);
    }
    return at;
}

} // namespace corvane
