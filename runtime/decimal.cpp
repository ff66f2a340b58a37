#include "runtime/decimal.h"

#include "runtime/fixed.h"

#include <algorithm>
#include <bit>

namespace corvane {

namespace {

constexpr std::size_t fractionDigits = 9; // as many as a 32-bit numerator holds

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string_view takeDigits(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

} // namespace

Decimal takeInteger(std::string_view& text) {
    Decimal decimal;
    decimal.negative = text.starts_with('-');
    if (decimal.negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    decimal.whole = takeDigits(text);
    return decimal;
}

Decimal takeDecimal(std::string_view& text) {
    Decimal decimal = takeInteger(text);
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        decimal.fraction = takeDigits(text);
    }
    return decimal;
}

std::int32_t integerFromDecimal(const Decimal& decimal) {
    std::uint32_t value = 0;
    for (const char digit : decimal.whole) {
        value = value * 10 + static_cast<std::uint32_t>(digit - '0');
    }
    return std::bit_cast<std::int32_t>(decimal.negative ? 0 - value : value);
}

Fixed fixedFromDecimal(const Decimal& decimal, Fixed (*divide)(std::int32_t, std::int32_t)) {
    std::int64_t value = 0;
    for (const char digit : decimal.whole) {
        value = detail::saturated(value * 10 + (digit - '0'));
    }
    value *= fixedOne;
    if (!decimal.fraction.empty()) {
        std::int32_t numerator = 0;
        std::int32_t denominator = 1;
        for (const char digit : decimal.fraction.substr(0, fractionDigits)) {
            numerator = numerator * 10 + (digit - '0');
            denominator *= 10;
        }
        value += divide(numerator, denominator);
    }
    return detail::saturated(decimal.negative ? -value : value);
}

} // namespace corvane
