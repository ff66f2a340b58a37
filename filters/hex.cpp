#include "filters/hex.h"

#include "runtime/exception.h"

#include <array>

namespace corvane {

namespace {

constexpr auto digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(notHexDigit);
    for (std::uint8_t i = 0; i < 10; ++i) {
        values[std::size_t{'0'} + i] = i;
    }
    for (std::uint8_t i = 0; i < 6; ++i) {
        values[std::size_t{'A'} + i] = static_cast<std::uint8_t>(10 + i);
        values[std::size_t{'a'} + i] = static_cast<std::uint8_t>(10 + i);
    }
    return values;
}();

constexpr std::string_view lowerDigits = "0123456789abcdef";

} // namespace

std::uint8_t hexDigit(std::uint8_t character) {
    return digitValues[character];
}

void inputHex(std::span<std::byte> destination, std::string_view digits) {
    if (digits.size() != 2 * destination.size()) {
        failException(Exception::type);
    }
    for (std::size_t i = 0; i < destination.size(); ++i) {
        const std::uint8_t high = hexDigit(static_cast<std::uint8_t>(digits[2 * i]));
        const std::uint8_t low = hexDigit(static_cast<std::uint8_t>(digits[2 * i + 1]));
        if ((high | low) > 15) {
            failException(Exception::type);
        }
        destination[i] = static_cast<std::byte>(high << 4 | low);
    }
}

void outputHex(std::span<char> destination, std::span<const std::byte> source) {
    if (destination.size() != 2 * source.size()) {
        failException(Exception::type);
    }
    for (std::size_t i = 0; i < source.size(); ++i) {
        const auto value = std::to_integer<std::uint8_t>(source[i]);
        destination[2 * i] = lowerDigits[value >> 4];
        destination[2 * i + 1] = lowerDigits[value & 15];
    }
}

} // namespace corvane
