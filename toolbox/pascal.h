// Length-prefixed strings: a length byte, then up to 255 bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace corvane {

inline constexpr std::size_t longestPascal = 255;

/// The bytes of a length-prefixed string; none for null.
inline std::string fromPascal(const std::uint8_t* text) {
    return text == nullptr ? std::string() : std::string(text + 1, text + 1 + text[0]);
}

/// Stores at most `limit` bytes of `text`.
inline void toPascal(std::string_view text, std::uint8_t* result,
                     std::size_t limit = longestPascal) {
    const std::size_t length = std::min(text.size(), limit);
    result[0] = static_cast<std::uint8_t>(length);
    std::memcpy(result + 1, text.data(), length);
}

} // namespace corvane
