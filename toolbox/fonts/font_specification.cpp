// What a description of a font says of its shapes, from one source or another.
#include "host/fonts.h"
#include "toolbox/fonts/font_face.h"

#include <algorithm>

#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

namespace corvane {

namespace {

/// A glyph of the font, in ems; of one that is not there, or blank, all is 0.
struct GlyphBox {
    double width = 0;
    double height = 0;
    double top = 0;
};

GlyphBox boxOf(const FontFace& face, char32_t character) {
    if (FT_Select_Charmap(face.get(), FT_ENCODING_UNICODE) != 0 ||
        !face.loadGlyph(FT_Get_Char_Index(face.get(), character))) {
        return {};
    }
    const FT_Glyph_Metrics& metrics = face.get()->glyph->metrics;
    return {face.ems(metrics.width), face.ems(metrics.height), face.ems(metrics.horiBearingY)};
}

/// About how wide stems of that weight are: a tenth of an em for text.
double stemOfWeight(std::int32_t weight) {
    return (10.0 + 220.0 * (weight - 50) / 900) / 1000;
}

/// What all sources have in common.
FontSpecification measured(const FontFace& face, const ListedFont& listed) {
    FontSpecification specification;
    specification.stemV = stemOfWeight(listed.weight);
    specification.stemH = boxOf(face, '-').height;
    if (specification.stemH == 0) {
        specification.stemH = specification.stemV;
    }
    specification.xHeight = boxOf(face, 'x').top;
    specification.capHeight = boxOf(face, 'H').top;
    specification.isFixedPitch = listed.isFixedPitch;
    specification.isItalic = listed.isItalic;
    specification.isSymbolic = isFontOfSigns(face);
    // The foot of an "l" with serifs is much wider than its stem.
    constexpr double foot = 1.6;
    specification.isSerif = !listed.isFixedPitch && !listed.isItalic &&
                            boxOf(face, 'l').width > foot * specification.stemV;
    return specification;
}

bool addProgram(const FontFace& face, FontSpecification& specification) {
    PS_PrivateRec program{};
    PS_FontInfoRec info{};
    if (FT_Get_PS_Font_Private(face.get(), &program) != 0) {
        return false;
    }
    if (program.standard_width[0] != 0) {
        specification.stemV = face.ems(program.standard_width[0]);
    }
    if (program.standard_height[0] != 0) {
        specification.stemH = face.ems(program.standard_height[0]);
    }
    if (FT_Get_PS_Font_Info(face.get(), &info) == 0) {
        specification.italicAngle = static_cast<double>(info.italic_angle);
        specification.isFixedPitch = specification.isFixedPitch || info.is_fixed_pitch != 0;
    }
    return true;
}

/// Families of serif faces by PANOSE: cove to rounded.
bool hasSerifs(const TT_OS2& table) {
    constexpr FT_Byte latinText = 2;
    return table.panose[0] == latinText && table.panose[1] >= 2 && table.panose[1] <= 10;
}

bool addTables(const FontFace& face, FontSpecification& specification) {
    const auto* const style =
        static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face.get(), FT_SFNT_OS2));
    const auto* const post =
        static_cast<const TT_Postscript*>(FT_Get_Sfnt_Table(face.get(), FT_SFNT_POST));
    if (style == nullptr || post == nullptr) {
        return false;
    }
    if (style->version >= 2 && style->version != 0xFFFF) {
        specification.xHeight = face.ems(style->sxHeight);
        specification.capHeight = face.ems(style->sCapHeight);
    }
    specification.italicAngle = static_cast<double>(post->italicAngle) / 65536;
    specification.isFixedPitch = specification.isFixedPitch || post->isFixedPitch != 0;
    specification.isSerif = hasSerifs(*style);
    return true;
}

} // namespace

std::optional<FontSpecification> specifyFont(std::int32_t font, SpecificationSource source) {
    const std::optional<FontFace> face = FontFace::open(font);
    if (!face) {
        return std::nullopt;
    }
    FontSpecification specification = measured(*face, listFonts()[static_cast<std::size_t>(font)]);
    const bool tells = source == SpecificationSource::program  ? addProgram(*face, specification)
                       : source == SpecificationSource::tables ? addTables(*face, specification)
                                                               : true;
    return tells ? std::optional(specification) : std::nullopt;
}

} // namespace corvane
