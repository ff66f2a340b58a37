// Text as the host's records hold it: a byte that counts, then the bytes counted.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// UTF-8; what is too long is cut between two characters. The rest of `into` stays.
inline void copyCounted(std::string_view text, std::span<std::uint8_t> into) {
    constexpr std::size_t most = 255;
    std::size_t length = std::min({text.size(), into.size() - 1, most});
    const auto continues = [&](std::size_t at) { return (text[at] & 0xC0) == 0x80; };
    while (length < text.size() && length > 0 && continues(length)) {
        --length;
    }
    into[0] = static_cast<std::uint8_t>(length);
    std::ranges::copy(text.substr(0, length), into.begin() + 1);
}

} // namespace corvane
