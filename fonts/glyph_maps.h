// What a font program says about its glyphs, turned round: each map is made once, in one pass.
#pragma once

#include "fonts/font_program.h"
#include "fonts/free_type.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// Empty where the program has no name for the glyph.
std::string glyphName(FT_Face face, GlyphNumber glyph);

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const {
        return std::hash<std::string_view>{}(name);
    }
};

/// Glyphs by name, but for glyph 0; of several with one name the first counts.
using GlyphsByName = std::unordered_map<std::string, GlyphNumber, NameHash, std::equal_to<>>;
GlyphsByName glyphsByName(FT_Face face);

/// Glyphs by CID, but for CID 0, of a CID-keyed CFF. FreeType numbers the glyphs of one that stands
/// alone by their CIDs, and those of one in an OpenType file by their order.
std::unordered_map<std::uint32_t, GlyphNumber> glyphsByCid(FT_Face face);

/// The lowest character that the Unicode cmap gives to each glyph; 0: none. Empty without a Unicode
/// cmap.
std::vector<char32_t> charactersByGlyph(FT_Face face);

} // namespace corvane
