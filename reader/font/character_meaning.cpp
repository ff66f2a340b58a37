#include "reader/font/character_meaning.h"

#include "fonts/order/text_order.h"
#include "reader/font/characters.h"

namespace corvane {

void MeaningChoice::offer(const std::u32string& text) {
    if (isOpen() && isText(text) && !runsBothWays(text) &&
        (!isBlankText(text) || isBlankGlyph_())) {
        taken_ = text.substr(0, longestMeaning);
    }
}

std::u32string MeaningChoice::textOr(std::uint32_t code) const {
    return taken_.empty() ? std::u32string(1, privateCharacter(code)) : taken_;
}

} // namespace corvane
