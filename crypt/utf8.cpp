#include "crypt/utf8.h"

#include <algorithm>
#include <array>

namespace corvane {

std::optional<char32_t> nextCharacter(Octets& text) {
    std::array<char, longestCharacter> front{};
    const Octets bytes = text.first(std::min(text.size(), front.size()));
    std::ranges::copy(bytes, front.begin());
    const Character character = decodeCharacter({front.data(), bytes.size()});
    if (character.length == 0) {
        return std::nullopt;
    }
    text = text.subspan(character.length);
    return character.code;
}

std::size_t putCharacter(char32_t character, std::span<std::uint8_t> room) {
    std::array<char, longestCharacter> bytes{};
    const std::size_t length = putCharacter(character, std::span(bytes));
    std::copy_n(bytes.begin(), length, room.begin());
    return length;
}

} // namespace corvane
