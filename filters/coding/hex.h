// Hexadecimal digits and bytes, and the filter between them (ASCIIHexDecode; PDF Reference, 3.3.1).
#pragma once

#include "filters/coding/ascii_mode.h"
#include "filters/decoder.h"

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

/// Reading: two digits become a byte, a digit left over at the end the high half of one; any other
/// character is skipped, but that ">" ends the data where the mode knows it. Writing: two
/// lower-case digits for each byte, a carriage return after every 64, no end marker. The wrong
/// direction raises `io`. Holds one block of the intake.
class HexFilter final : public Decoder {
public:
    explicit HexFilter(AsciiMode asciiMode);

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;
    void skipRest() override;
    void encode(std::span<const std::byte> bytes);

    static std::int32_t entryHex(Filter& filter, Operation operation, std::byte* buffer,
                                 std::int32_t* argument);

    AsciiMode mode_;
    std::int32_t column_ = 0; ///< bytes on the line being written
};

/// Another mode than those named raises `type`, now or when the filter is unlinked.
FilterOwner setupHex(AsciiMode mode);

} // namespace corvane
