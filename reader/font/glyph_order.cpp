#include "reader/font/glyph_order.h"

#include "fonts/encodings.h"
#include "fonts/glyph_names.h"

#include <algorithm>
#include <array>

namespace corvane {

bool hasMacintoshOrder(std::string_view family) {
    constexpr std::array<std::string_view, 11> families{
        "Arial",           "Times New Roman",  "Courier New",    "Verdana",
        "Georgia",         "Tahoma",           "Trebuchet MS",   "Comic Sans MS",
        "Liberation Sans", "Liberation Serif", "Liberation Mono"};
    return std::ranges::find(families, family) != families.end();
}

/// Three glyphs of no character come first; the code of Delete has no glyph.
std::u32string characterInMacintoshOrder(GlyphNumber glyph) {
    constexpr GlyphNumber blank = 3;
    constexpr GlyphNumber last = 225;
    constexpr std::uint32_t deleteCode = 127;
    if (glyph < blank || glyph > last) {
        return {};
    }
    const std::uint32_t code = glyph - blank + ' ';
    return charactersOfName(
        macintoshNameOf(static_cast<std::uint8_t>(code < deleteCode ? code : code + 1)));
}

} // namespace corvane
