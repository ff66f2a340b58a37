// Letters as the glyphs of a font: kerned, joined, put together, as their script wants it.
#pragma once

#include "fonts/made/open_type_font.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace corvane {

struct ShapedGlyph {
    GlyphNumber glyph = 0;   ///< 0: the font lacks the letter
    std::size_t cluster = 0; ///< the first of the characters that it shows, in the whole text
    double advance = 0;      ///< ems, as are the next: from the pen to where the glyph stands
    double x = 0;
    double y = 0;
};

/// Characters of one direction and script within a text. What stands around them counts for how
/// letters join.
struct TextStretch {
    std::u32string_view text;
    std::size_t start = 0;
    std::size_t count = 0;
    bool isRightToLeft = false;
    bool isVertical = false;  ///< glyphs are those of columns; they have no places
    std::uint32_t script = 0; ///< as `scriptsOf` tells; 0: that of the letters
    bool hasLigatures = true; ///< false: only those without which the script cannot be read
};

/// The glyphs from left to right, whatever the direction. Nothing for characters that nobody sees.
std::vector<ShapedGlyph> shapeText(const OpenTypeFont& font, const TextStretch& stretch);

} // namespace corvane
