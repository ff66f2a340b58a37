#include "reader/font/glyph_choice.h"

#include "fonts/glyph_names.h"

namespace corvane {

namespace {

using Choice = std::optional<GlyphNumber>;

Choice byCharacters(const FontProgram& program, const std::u32string& characters) {
    return characters.size() == 1 ? program.byCharacter(characters[0]) : std::nullopt;
}

/// TrueType: by a Unicode cmap, by the Macintosh one, by the names of "post".
Choice trueTypeByName(const GlyphSource& source, std::string_view name) {
    const FontProgram& program = *source.program;
    if (const Choice glyph = byCharacters(program, charactersOfGlyph(source, name))) {
        return glyph;
    }
    if (const auto code = macintoshCodeOf(name)) {
        if (const Choice glyph = program.bySubtable(1, 0, *code)) {
            return glyph;
        }
    }
    return program.byName(name);
}

/// TrueType: by the cmap of symbols, whose codes have a page in front, or the Macintosh one.
Choice trueTypeByCode(const FontProgram& program, std::uint8_t code) {
    for (const std::uint32_t page : {0xF000U, 0U, 0xF100U, 0xF200U}) {
        if (const Choice glyph = program.bySubtable(3, 0, page + code)) {
            return glyph;
        }
    }
    return program.bySubtable(1, 0, code);
}

Choice trueTypeGlyph(const GlyphSource& source, std::uint8_t code) {
    std::string_view name = source.encoding->nameOf(code);
    const bool codeFirst =
        !source.encoding->isGiven() || (source.isSymbolic && source.program->isSymbolic());
    if (name.empty()) {
        name = glyphNameOf(StandardEncodingKind::standard, code);
    }
    const auto byName = [&] { return name.empty() ? Choice() : trueTypeByName(source, name); };
    if (codeFirst) {
        const Choice glyph = trueTypeByCode(*source.program, code);
        return glyph ? glyph : byName();
    }
    const Choice glyph = byName();
    return glyph || name == ".notdef" ? glyph : trueTypeByCode(*source.program, code);
}

/// Type 1 and CFF, and fonts in place of the document's own.
Choice namedGlyph(const GlyphSource& source, std::uint8_t code) {
    const std::string_view name = source.encoding->nameOf(code);
    const FontProgram& program = *source.program;
    if (name.empty()) {
        return source.isEmbedded ? program.byOwnCode(code) : std::nullopt;
    }
    if (const Choice glyph = program.byName(name)) {
        return glyph;
    }
    return byCharacters(program, charactersOfGlyph(source, name));
}

} // namespace

std::optional<GlyphNumber> chooseGlyph(const GlyphSource& source, std::uint8_t code) {
    if (source.program == nullptr) {
        return std::nullopt;
    }
    const bool isTrueType = source.program->kind() == ProgramKind::trueType;
    return isTrueType && source.isEmbedded ? trueTypeGlyph(source, code) : namedGlyph(source, code);
}

std::u32string charactersOfGlyph(const GlyphSource& source, std::string_view name) {
    if (source.isDingbats) {
        if (const char32_t character = dingbatOfName(name); character != 0) {
            return {character};
        }
    }
    return charactersOfName(name);
}

} // namespace corvane
