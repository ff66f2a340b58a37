#include "filters/coding/hex.h"

#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

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

constexpr std::byte endMarker{'>'};

/// Bytes on a line that is written.
constexpr std::int32_t lineBytes = 32;

constexpr std::uint64_t everyByte(std::uint8_t value) {
    return 0x0101'0101'0101'0101U * value;
}

/// The high bit of every byte of `v` (all below 128) that lies from `low` to `high`.
constexpr std::uint64_t bytesBetween(std::uint64_t v, std::uint8_t low, std::uint8_t high) {
    return (v + everyByte(0x80 - low)) & ~(v + everyByte(0x7F - high)) & everyByte(0x80);
}

/// Eight digits, the first in the lowest byte, to four bytes. False where one is no digit.
bool joinDigits(std::uint64_t digits, std::uint32_t& joined) {
    const std::uint64_t folded = digits | everyByte(0x20);
    const std::uint64_t valid =
        (bytesBetween(digits, '0', '9') | bytesBetween(folded, 'a', 'f')) & ~digits;
    if ((digits & everyByte(0x80)) != 0 || (valid & everyByte(0x80)) != everyByte(0x80)) {
        return false;
    }
    const std::uint64_t values = (digits & everyByte(0x0F)) + 9 * ((digits >> 6) & everyByte(1));
    std::uint64_t bytes = ((values << 4) | (values >> 8)) & 0x00FF'00FF'00FF'00FFU;
    bytes = (bytes | (bytes >> 8)) & 0x0000'FFFF'0000'FFFFU;
    joined = static_cast<std::uint32_t>(bytes | (bytes >> 16));
    return true;
}

/// Joins pairs of digits from the beginning of `in` until one is no digit or either end is near;
/// bytes written. Four bytes at a time where the machine's first byte is its lowest.
std::size_t joinRun(std::span<const std::byte> in, std::span<std::byte> out) {
    const std::size_t most = std::min(in.size() / 2, out.size());
    std::size_t done = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; done + 4 <= most; done += 4) {
            std::uint64_t digits = 0;
            std::uint32_t bytes = 0;
            std::memcpy(&digits, in.data() + 2 * done, sizeof digits);
            if (!joinDigits(digits, bytes)) {
                break;
            }
            std::memcpy(out.data() + done, &bytes, sizeof bytes);
        }
    }
    return done;
}

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

HexFilter::HexFilter(AsciiMode asciiMode) : Decoder(entryHex), mode_(asciiMode) {}

std::size_t HexFilter::decode(std::span<std::byte> out) {
    if (mode_ == AsciiMode::write) {
        failException(Exception::io);
    }
    std::size_t done = 0;
    std::uint8_t high = notHexDigit;
    while (done < out.size()) {
        const std::span<const std::byte> in = intake().held();
        if (in.empty()) {
            break;
        }
        std::size_t at = 0;
        if (high == notHexDigit) {
            const std::size_t joined = joinRun(in, out.subspan(done));
            done += joined;
            at = 2 * joined;
        }
        // What stopped the run; a character between two pairs is gone past, and the next run
        // begins.
        while (at < in.size() && done < out.size()) {
            const std::byte c = in[at++];
            const std::uint8_t digit = hexDigit(std::to_integer<std::uint8_t>(c));
            if (digit == notHexDigit) {
                if (c == endMarker && knowsMarker(mode_)) {
                    intake().take(at);
                    if (high != notHexDigit) {
                        out[done++] = static_cast<std::byte>(high << 4);
                    }
                    end();
                    return done;
                }
                if (high == notHexDigit) {
                    break;
                }
            } else if (high == notHexDigit) {
                high = digit;
            } else {
                out[done++] = static_cast<std::byte>(high << 4 | digit);
                high = notHexDigit;
            }
        }
        intake().take(at);
    }
    if (done < out.size() && high != notHexDigit) {
        out[done++] = static_cast<std::byte>(high << 4);
    }
    return done;
}

void HexFilter::restart() {
    column_ = 0;
}

/// In the mode that does so, goes past the end marker.
void HexFilter::skipRest() {
    if (mode_ != AsciiMode::pastMarker) {
        return;
    }
    for (auto in = intake().held(); !in.empty(); in = intake().held()) {
        const auto marker = std::ranges::find(in, endMarker);
        intake().take(static_cast<std::size_t>(marker - in.begin()));
        if (marker != in.end()) {
            intake().take(1);
            return;
        }
    }
}

void HexFilter::encode(std::span<const std::byte> bytes) {
    if (knowsMarker(mode_)) {
        failException(Exception::io);
    }
    std::array<char, 2 * lineBytes + 1> line{};
    while (!bytes.empty()) {
        const std::size_t count =
            std::min(bytes.size(), static_cast<std::size_t>(lineBytes - column_));
        outputHex(std::span(line).first(2 * count), bytes.first(count));
        bytes = bytes.subspan(count);
        column_ += static_cast<std::int32_t>(count);
        std::size_t length = 2 * count;
        if (column_ == lineBytes) {
            line[length++] = '\r';
            column_ = 0;
        }
        writeFilter(*next, std::as_bytes(std::span(line).first(length)));
    }
}

std::int32_t HexFilter::entryHex(Filter& filter, Operation operation, std::byte* buffer,
                                 std::int32_t* argument) {
    auto& self = static_cast<HexFilter&>(filter);
    if (operation == Operation::write) {
        self.encode(transferred(buffer, *argument));
        return *argument;
    }
    if (operation == Operation::unlink) {
        checkMode(self.mode_);
    }
    return entryDecoder(filter, operation, buffer, argument);
}

FilterOwner setupHex(AsciiMode mode) {
    checkMode(mode);
    return std::make_unique<HexFilter>(mode);
}

} // namespace corvane
