#include "reader/font/kinds/simple_font.h"

#include "fonts/glyph_names.h"

#include "reader/font/characters.h"
#include "reader/font/font_entries.h"
#include "reader/font/kinds/standard_fonts.h"

namespace corvane {

namespace {

/// Flags of a font descriptor; PDF Reference, 5.7.1.
constexpr std::int64_t flagSymbolic = 1 << 2;

} // namespace

SimpleFont::SimpleFont(DocumentCache& cache, const Object& font, const Object& descriptor,
                       FontNames names, ShownProgram shown, std::string_view baseFont)
    : ProgramFont(std::move(names), std::move(shown)), encoding_(cache, font),
      widths_(cache, font, descriptor), toUnicode_(readCMapEntry(cache, font, "ToUnicode")) {
    const auto flags =
        static_cast<std::int64_t>(numberEntry(cache, descriptor, "Flags").value_or(0));
    isSymbolic_ = (flags & flagSymbolic) != 0;
    const std::optional<StandardFont> standard = standardFont(baseFont);
    isDingbats_ = standard && standard->isDingbats();
    const bool isTrueType = nameEntry(cache, font, "Subtype") == "TrueType";
    if (encoding_.hasBase()) {
        return;
    }
    // What an embedded program says itself counts; else what most readers assume.
    if (!isEmbedded()) {
        encoding_.assume(isDingbats_                        ? StandardEncodingKind::zapfDingbats
                         : standard && standard->isSymbol() ? StandardEncodingKind::symbol
                         : isTrueType                       ? StandardEncodingKind::winAnsi
                                                            : StandardEncodingKind::standard);
    }
}

GlyphSource SimpleFont::source() const {
    return {.program = program(),
            .encoding = &encoding_,
            .isSymbolic = isSymbolic_,
            .isEmbedded = isEmbedded(),
            .isDingbats = isDingbats_};
}

StringCode SimpleFont::firstCode(std::span<const std::byte> string) const {
    return {.code = std::to_integer<std::uint32_t>(string.front()), .length = 1};
}

MeaningChoice SimpleFont::meaningOf(std::uint8_t code,
                                    const std::optional<GlyphNumber>& glyph) const {
    MeaningChoice meaning([this, glyph] { return isBlank(glyph); });
    if (toUnicode_ != nullptr) {
        meaning.offer(toUnicode_->text(code).value_or(U""));
    }
    if (meaning.isOpen()) {
        meaning.offer(charactersOfGlyph(source(), encoding_.nameOf(code)));
    }
    if (meaning.isOpen() && glyph) {
        meaning.offer(charactersOfGlyph(source(), program()->nameOf(*glyph)));
    }
    if (meaning.isOpen() && glyph) {
        meaning.offer({program()->characterOf(*glyph)});
    }
    if (meaning.isOpen() && glyph && program()->bySubtable(1, 0, code) == glyph) {
        meaning.offer(charactersOfName(glyphNameOf(StandardEncodingKind::macRoman, code)));
    }
    return meaning;
}

CodeGlyph SimpleFont::describe(StringCode code) const {
    const auto byte = static_cast<std::uint8_t>(code.code);
    CodeGlyph described;
    FaceGlyph& shape = described.shape;
    shape.glyph = chooseGlyph(source(), byte);
    const MeaningChoice meaning = meaningOf(byte, shape.glyph);
    described.isMeant = !meaning.isOpen();
    shape.text = meaning.textOr(byte);
    described.isFound = hasGlyph(described);
    if (!described.isFound && isEmbedded()) {
        shape.glyph = 0;
    }
    // What is missing is as wide as what a program shows for it, whether or not that is shown.
    const bool hasOwn = program() != nullptr && (shape.glyph || !described.isFound);
    const double own = hasOwn ? program()->advance(shape.glyph.value_or(0)) : 0;
    const std::optional<double> stated = widths_.widthOf(byte);
    shape.width = stated ? *stated / 1000 : own;
    shape.stretch = stretchOf(shape.glyph, shape.width);
    described.advance = shape.width;
    described.isTyped = described.isFound && shape.width > 0;
    return described;
}

std::vector<StringCode> SimpleFont::typedCodes() const {
    std::vector<StringCode> codes;
    for (std::uint32_t code = 0; code < 256; ++code) {
        codes.push_back({.code = code, .length = 1});
    }
    return codes;
}

} // namespace corvane
