#include "crypt/utf8.h"

namespace corvane {

std::optional<char32_t> nextCharacter(Octets& text) {
    const std::uint8_t lead = text.front();
    const std::size_t more = lead < 0x80   ? 0
                             : lead < 0xC2 ? 4
                             : lead < 0xE0 ? 1
                             : lead < 0xF0 ? 2
                                           : 3;
    if (more >= text.size() || more == 4 || lead > 0xF4) {
        return std::nullopt;
    }
    char32_t character = more == 0 ? lead : lead & (0x3FU >> more);
    for (std::size_t i = 1; i <= more; ++i) {
        if ((text[i] & 0xC0) != 0x80) {
            return std::nullopt;
        }
        character = character << 6 | (text[i] & 0x3FU);
    }
    text = text.subspan(more + 1);
    return character;
}

std::size_t putCharacter(char32_t character, std::span<std::uint8_t> room) {
    if (character < 0x80) {
        room[0] = static_cast<std::uint8_t>(character);
        return 1;
    }
    const std::size_t more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    for (std::size_t i = more; i > 0; --i) {
        room[i] = static_cast<std::uint8_t>(0x80U | (character & 0x3FU));
        character >>= 6;
    }
    // As many bits are set in front as the character has bytes.
    room[0] = static_cast<std::uint8_t>((0xFF00U >> (more + 1) & 0xFFU) | character);
    return more + 1;
}

} // namespace corvane
