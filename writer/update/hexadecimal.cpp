#include "writer/update/hexadecimal.h"

#include <array>
#include <string_view>

namespace corvane {

std::string hexadecimal(std::span<const std::byte> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::byte byte : bytes) {
        text += digits[static_cast<std::size_t>(byte) >> 4];
        text += digits[static_cast<std::size_t>(byte) & 0xF];
    }
    return text;
}

std::string hexadecimal(std::uint64_t value) {
    std::array<std::byte, sizeof value> bytes{};
    for (std::size_t i = bytes.size(); i-- > 0; value >>= 8) {
        bytes[i] = static_cast<std::byte>(value & 0xFF);
    }
    return hexadecimal(bytes);
}

} // namespace corvane
