#include "app/svg/text/text_direction.h"

#include "app/artwork/text/characters.h"

#include <algorithm>

namespace corvane {

bool holdsRightToLeft(std::string_view text) {
    while (!text.empty()) {
        const Character character = decodeCharacter(text);
        const char32_t c = character.code;
        text.remove_prefix(std::max<std::size_t>(character.length, 1));
        if ((c >= 0x590 && c <= 0x8FF) || (c >= 0xFB1D && c <= 0xFDFF) ||
            (c >= 0xFE70 && c <= 0xFEFC) || (c >= 0x10800 && c <= 0x10FFF) ||
            (c >= 0x1E800 && c <= 0x1EFFF)) {
            return true;
        }
    }
    return false;
}

} // namespace corvane
