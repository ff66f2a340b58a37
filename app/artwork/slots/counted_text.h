// Text as the host's records hold it: a byte that counts, then the bytes counted.
#pragma once

#include "host/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

/// UTF-8; what is too long is cut between two characters. The rest of `into` stays.
inline void copyCounted(std::string_view text, std::span<std::uint8_t> into) {
    constexpr std::size_t most = 255;
    const std::string_view part = cutText(text, std::min(into.size() - 1, most));
    into[0] = static_cast<std::uint8_t>(part.size());
    std::ranges::copy(part, into.begin() + 1);
}

/// The bytes that are counted, as far as there are any.
inline std::string countedText(std::span<const std::uint8_t> from) {
    const auto bytes = from.subspan(1, std::min<std::size_t>(from[0], from.size() - 1));
    return {bytes.begin(), bytes.end()};
}

} // namespace corvane
