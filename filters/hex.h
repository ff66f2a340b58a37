// Hexadecimal digits and bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// What stands for a byte that is no hexadecimal digit.
inline constexpr std::uint8_t notHexDigit = 255;

/// Value of a digit, or `notHexDigit`.
std::uint8_t hexDigit(std::uint8_t character);

/// Turns two digits for each byte of `destination` into that byte. Raises `type` on anything that
/// is not a digit, and where `digits` is not twice as long.
void inputHex(std::span<std::byte> destination, std::string_view digits);

/// Writes two lower-case digits for each byte; `destination` holds twice as many characters, or
/// `type`.
void outputHex(std::span<char> destination, std::span<const std::byte> source);

} // namespace corvane
