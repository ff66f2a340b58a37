#include "host/fonts.h"
#include "toolbox/fonts/font_face.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

using Characters = std::array<char32_t, 256>;

/// The charmap by which a font of signs has codes of its own, and what its codes begin with.
struct OwnCodes {
    FT_CharMap map = nullptr;
    FT_ULong first = 0;
};

OwnCodes ownCodes(FT_Face face) {
    constexpr FT_ULong privateUse = 0xF000;
    OwnCodes codes;
    for (const FT_CharMap map :
         std::span(face->charmaps, static_cast<std::size_t>(face->num_charmaps))) {
        if (map->encoding == FT_ENCODING_ADOBE_CUSTOM) {
            return {map, 0};
        }
        if (map->encoding == FT_ENCODING_MS_SYMBOL) {
            codes = {map, privateUse};
        }
    }
    return codes;
}

/// The lowest character of each glyph that `glyphs` names; 0: none.
Characters charactersOf(FT_Face face, const std::array<FT_UInt, 256>& glyphs) {
    Characters found{};
    if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0) {
        return found;
    }
    FT_UInt glyph = 0;
    for (FT_ULong character = FT_Get_First_Char(face, &glyph); glyph != 0;
         character = FT_Get_Next_Char(face, character, &glyph)) {
        for (std::size_t code = 0; code < glyphs.size(); ++code) {
            if (glyphs[code] == glyph && found[code] == 0) {
                found[code] = static_cast<char32_t>(character);
            }
        }
    }
    return found;
}

std::array<FT_UInt, 256> glyphsOf(FT_Face face, std::span<const char32_t, 256> characters) {
    std::array<FT_UInt, 256> glyphs{};
    if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) == 0) {
        std::ranges::transform(characters, glyphs.begin(), [face](char32_t character) {
            return character == 0 ? 0 : FT_Get_Char_Index(face, character);
        });
    }
    return glyphs;
}

std::array<FT_UInt, 256> glyphsOf(FT_Face face, const OwnCodes& codes) {
    std::array<FT_UInt, 256> glyphs{};
    if (FT_Set_Charmap(face, codes.map) == 0) {
        for (FT_ULong code = 0; code < glyphs.size(); ++code) {
            glyphs[code] = FT_Get_Char_Index(face, codes.first + code);
        }
    }
    return glyphs;
}

} // namespace

std::optional<FontMetrics> measureFont(std::int32_t font,
                                       std::span<const char32_t, 256> characters) {
    const std::optional<FontFace> opened = FontFace::open(font);
    if (!opened) {
        return std::nullopt;
    }
    const FT_Face face = opened->get();
    FontMetrics metrics;
    metrics.ascent = opened->ems(face->ascender);
    metrics.descent = -opened->ems(face->descender);
    metrics.leading = std::max(0.0, opened->ems(face->height) - metrics.ascent - metrics.descent);
    metrics.left = opened->ems(face->bbox.xMin);
    metrics.bottom = opened->ems(face->bbox.yMin);
    metrics.right = opened->ems(face->bbox.xMax);
    metrics.top = opened->ems(face->bbox.yMax);
    std::ranges::copy(characters, metrics.characters.begin());
    std::array<FT_UInt, 256> glyphs = glyphsOf(face, characters);
    const OwnCodes codes = ownCodes(face);
    if (codes.map != nullptr && isFontOfSigns(*opened)) {
        glyphs = glyphsOf(face, codes);
        metrics.characters = charactersOf(face, glyphs);
    }
    for (std::size_t code = 0; code < glyphs.size(); ++code) {
        if (opened->loadGlyph(glyphs[code])) {
            metrics.widths[code] = opened->ems(face->glyph->metrics.horiAdvance);
        }
    }
    return metrics;
}

} // namespace corvane
