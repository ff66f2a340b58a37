// Letters in a font of the page.
#pragma once

#include "reader/font/page_font.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Letters that one glyph of the font shows, or a blank.
struct EncodedLetters {
    std::string codes = {}; ///< the bytes of a string
    std::size_t start = 0;  ///< in the text
    double advance = 0;     ///< in ems of the font, without spacing
    std::int32_t count = 0; ///< of glyphs
    bool isBlank = false;   ///< a blank that the font does not have: `codes` is empty
};

/// The text in codes of that font, a glyph each; nothing where the font does not have a letter.
std::optional<std::vector<EncodedLetters>> encodeText(PageFont& font, std::u32string_view text);

} // namespace corvane
