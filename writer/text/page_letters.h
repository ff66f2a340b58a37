// Letters in a font of the page.
#pragma once

#include "reader/font/page_font.h"

#include <cstdint>
#include <optional>
#include <span>
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
};

/// What is known of a letter beside its character.
struct LetterFacts {
    std::int32_t face = 0; ///< of the made fonts, in which the person sees it
    /// Whether it may be of one glyph with the letter before it; it is otherwise only where the
    /// font has no other glyph for it.
    bool mayJoin = true;
};

/// The text in codes of that font, a glyph each; nothing where the font does not have a letter. A
/// blank that it does not have has no codes. `places`: one for each letter, or none.
std::optional<std::vector<EncodedLetters>> encodeText(PageFont& font, std::u32string_view text,
                                                      std::span<const LetterFacts> places = {});

} // namespace corvane
