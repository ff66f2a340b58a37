#include "fonts/glyph_maps.h"
#include "runtime/budget.h"

#include <array>

#include FT_CID_H
#include FT_TRUETYPE_TABLES_H

namespace corvane {

std::string glyphName(FT_Face face, GlyphNumber glyph) {
    std::array<char, 256> name{};
    if (!FT_HAS_GLYPH_NAMES(face) ||
        FT_Get_Glyph_Name(face, glyph, name.data(), name.size()) != 0) {
        return {};
    }
    return name.data();
}

GlyphsByName glyphsByName(FT_Face face) {
    GlyphsByName glyphs;
    if (!FT_HAS_GLYPH_NAMES(face)) {
        return glyphs;
    }
    for (GlyphNumber glyph = 1; glyph < static_cast<GlyphNumber>(face->num_glyphs); ++glyph) {
        if (std::string name = glyphName(face, glyph); !name.empty()) {
            glyphs.try_emplace(std::move(name), glyph);
        }
    }
    return glyphs;
}

std::unordered_map<std::uint32_t, GlyphNumber> glyphsByCid(FT_Face face) {
    std::unordered_map<std::uint32_t, GlyphNumber> glyphs;
    FT_UInt cid = 0;
    for (GlyphNumber place = 1; place < static_cast<GlyphNumber>(face->num_glyphs) &&
                                FT_Get_CID_From_Glyph_Index(face, place, &cid) == 0;
         ++place) {
        if (cid != 0) {
            glyphs.try_emplace(cid, FT_IS_SFNT(face) ? place : cid);
        }
    }
    return glyphs;
}

std::vector<char32_t> charactersByGlyph(FT_Face face) {
    // FreeType walks a cmap of format 8 from its start for each character.
    constexpr FT_Long slowFormat = 8;
    if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0 ||
        FT_Get_CMap_Format(face->charmap) == slowFormat) {
        return {};
    }
    std::vector<char32_t> characters(static_cast<std::size_t>(face->num_glyphs));
    FT_UInt glyph = 0;
    FT_ULong character = FT_Get_First_Char(face, &glyph);
    for (std::int32_t pairs = 0; glyph != 0 && character <= 0x10FFFF && pairs < budget::cmapPairs;
         ++pairs) {
        if (glyph < characters.size() && characters[glyph] == 0) {
            characters[glyph] = static_cast<char32_t>(character);
        }
        character = FT_Get_Next_Char(face, character, &glyph);
    }
    return characters;
}

} // namespace corvane
