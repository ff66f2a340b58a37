#include "fonts/font_program.h"

#include "fonts/embedding.h"
#include "fonts/free_type_outline.h"
#include "fonts/glyph_maps.h"
#include "fonts/glyph_names.h"
#include "fonts/mended_program.h"
#include "runtime/budget.h"

#include <algorithm>

#include FT_CID_H
#include FT_FONT_FORMATS_H
#include FT_TRUETYPE_IDS_H

namespace corvane {

namespace {

std::optional<ProgramKind> kindOf(FT_Face face) {
    const char* format = FT_Get_Font_Format(face);
    const std::string_view name = format == nullptr ? "" : format;
    if (name == "TrueType") {
        return ProgramKind::trueType;
    }
    if (name == "CFF") {
        // In an OpenType file such a program has no flag.
        FT_Bool isKeyed = 0;
        const bool isKnown = FT_Get_CID_Is_Internally_CID_Keyed(face, &isKeyed) == 0;
        return isKnown && isKeyed != 0 ? ProgramKind::cidCff : ProgramKind::cff;
    }
    if (name == "Type 1") {
        return ProgramKind::type1;
    }
    return std::nullopt;
}

std::optional<GlyphNumber> unlessMissing(FT_UInt glyph) {
    return glyph == 0 ? std::nullopt : std::optional<GlyphNumber>(glyph);
}

/// Quadratic curves become cubic ones, which have more points.
std::size_t pointsOf(const GlyphOutline& outline) {
    std::size_t points = outline.size();
    for (const Contour& contour : outline) {
        for (const OutlineStep& step : contour.steps) {
            points += step.isCurve ? 3 : 1;
        }
    }
    return points;
}

class FreeTypeProgram final : public FontProgram {
public:
    FreeTypeProgram(Face face, ProgramKind kind)
        : face_(std::move(face)), kind_(kind), em_(1.0 / face_->units_per_EM) {}

    ProgramKind kind() const override { return kind_; }
    std::uint32_t glyphCount() const override {
        return static_cast<std::uint32_t>(face_->num_glyphs);
    }
    bool isSymbolic() const override;

    std::optional<GlyphNumber> byName(std::string_view name) const override;
    std::optional<GlyphNumber> byCharacter(char32_t character) const override;
    std::optional<GlyphNumber> bySubtable(int platform, int encoding,
                                          std::uint32_t code) const override;
    std::optional<GlyphNumber> byOwnCode(std::uint8_t code) const override;
    std::optional<GlyphNumber> byCid(std::uint32_t cid) const override;

    std::string nameOf(GlyphNumber glyph) const override { return glyphName(face_.get(), glyph); }
    char32_t characterOf(GlyphNumber glyph) const override;
    double advance(GlyphNumber glyph) const override;
    GlyphOutline outline(GlyphNumber glyph) const override;

    double ascent() const override { return face_->ascender * em_; }
    double descent() const override { return -face_->descender * em_; }
    std::string familyName() const override {
        return face_->family_name == nullptr ? "" : face_->family_name;
    }
    bool mayBeEmbedded() const override;

private:
    FT_CharMap subtable(int platform, int encoding) const;
    FT_CharMap ownEncoding() const;
    std::optional<GlyphNumber> look(FT_CharMap map, FT_ULong code) const;

    Face face_;
    ProgramKind kind_;
    double em_; ///< ems in a unit of the font
    // Made when they are first asked for.
    mutable std::optional<GlyphsByName> names_;
    mutable std::optional<std::unordered_map<std::uint32_t, GlyphNumber>> cids_;
    mutable std::optional<std::vector<char32_t>> characters_;
};

FT_CharMap FreeTypeProgram::subtable(int platform, int encoding) const {
    const std::span maps(face_->charmaps, static_cast<std::size_t>(face_->num_charmaps));
    const auto found = std::ranges::find_if(maps, [&](FT_CharMap map) {
        return map->platform_id == platform && map->encoding_id == encoding;
    });
    return found == maps.end() ? nullptr : *found;
}

FT_CharMap FreeTypeProgram::ownEncoding() const {
    const std::span maps(face_->charmaps, static_cast<std::size_t>(face_->num_charmaps));
    const auto found = std::ranges::find_if(
        maps, [](FT_CharMap map) { return map->platform_id == TT_PLATFORM_ADOBE; });
    return found == maps.end() ? nullptr : *found;
}

std::optional<GlyphNumber> FreeTypeProgram::look(FT_CharMap map, FT_ULong code) const {
    if (map == nullptr || FT_Set_Charmap(face_.get(), map) != 0) {
        return std::nullopt;
    }
    return unlessMissing(FT_Get_Char_Index(face_.get(), code));
}

bool FreeTypeProgram::isSymbolic() const {
    return kind_ == ProgramKind::trueType &&
           subtable(TT_PLATFORM_MICROSOFT, TT_MS_ID_SYMBOL_CS) != nullptr &&
           subtable(TT_PLATFORM_MICROSOFT, TT_MS_ID_UNICODE_CS) == nullptr;
}

std::optional<GlyphNumber> FreeTypeProgram::byName(std::string_view name) const {
    if (!names_) {
        names_ = glyphsByName(face_.get());
    }
    const auto found = names_->find(name);
    return found == names_->end() ? std::nullopt : std::optional(found->second);
}

std::optional<GlyphNumber> FreeTypeProgram::byCharacter(char32_t character) const {
    if (FT_Select_Charmap(face_.get(), FT_ENCODING_UNICODE) != 0) {
        return std::nullopt;
    }
    return unlessMissing(FT_Get_Char_Index(face_.get(), character));
}

std::optional<GlyphNumber> FreeTypeProgram::bySubtable(int platform, int encoding,
                                                       std::uint32_t code) const {
    const FT_CharMap map = subtable(platform, encoding);
    auto glyph = look(map, code);
    // Symbols have a block of the private use area; most fonts use the first.
    const bool isSymbols = platform == TT_PLATFORM_MICROSOFT && encoding == TT_MS_ID_SYMBOL_CS;
    for (FT_ULong block = 0xF000; isSymbols && !glyph && code < 0x100 && block <= 0xF200;
         block += 0x100) {
        glyph = look(map, block + code);
    }
    return glyph;
}

std::optional<GlyphNumber> FreeTypeProgram::byOwnCode(std::uint8_t code) const {
    return look(ownEncoding(), code);
}

std::optional<GlyphNumber> FreeTypeProgram::byCid(std::uint32_t cid) const {
    if (kind_ != ProgramKind::cidCff) {
        return cid < glyphCount() ? unlessMissing(cid) : std::nullopt;
    }
    if (!cids_) {
        cids_ = glyphsByCid(face_.get());
    }
    const auto found = cids_->find(cid);
    return found == cids_->end() ? std::nullopt : std::optional(found->second);
}

char32_t FreeTypeProgram::characterOf(GlyphNumber glyph) const {
    if (!characters_) {
        characters_ = charactersByGlyph(face_.get());
    }
    if (glyph < characters_->size() && (*characters_)[glyph] != 0) {
        return (*characters_)[glyph];
    }
    const std::u32string text = charactersOfName(nameOf(glyph));
    return text.size() == 1 ? text.front() : 0;
}

double FreeTypeProgram::advance(GlyphNumber glyph) const {
    return face_.advance(glyph) * em_;
}

GlyphOutline FreeTypeProgram::outline(GlyphNumber glyph) const {
    if (!face_.load(glyph) || face_->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
        return {};
    }
    GlyphOutline outline = outlineOf(face_->glyph->outline, em_);
    return pointsOf(outline) > budget::outlinePoints ? GlyphOutline() : outline;
}

bool FreeTypeProgram::mayBeEmbedded() const {
    return permitsSubsets(FT_Get_FSType_Flags(face_.get()));
}

std::shared_ptr<const FontProgram> programOf(std::optional<Face> face) {
    if (!face || (*face)->units_per_EM == 0 || (*face)->num_glyphs < 1 ||
        (*face)->num_glyphs > budget::fontGlyphs) {
        return nullptr;
    }
    const auto kind = kindOf(face->get());
    return kind ? std::make_shared<FreeTypeProgram>(std::move(*face), *kind) : nullptr;
}

} // namespace

std::shared_ptr<const FontProgram> FontProgram::open(std::vector<std::byte> file,
                                                     std::int32_t face) {
    if (file.size() > budget::fontProgramBytes || face < 0) {
        return nullptr;
    }
    return programOf(Face::open(mendedProgram(std::move(file)), face));
}

std::shared_ptr<const FontProgram> FontProgram::openFile(const std::string& path,
                                                         std::int32_t face) {
    return programOf(Face::openFile(path, face));
}

} // namespace corvane
