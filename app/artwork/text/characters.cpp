#include "app/artwork/text/characters.h"

namespace corvane {

bool isPlainText(std::string_view text) {
    while (!text.empty()) {
        const Character character = decodeCharacter(text);
        if (character.length == 0 || !isMarkupCharacter(character.code)) {
            return false;
        }
        text.remove_prefix(character.length);
    }
    return true;
}

} // namespace corvane
