#include "reader/font/kinds/composite_font.h"

#include "reader/font/character_meaning.h"
#include "reader/font/characters.h"
#include "reader/font/cmap/predefined_cmaps.h"
#include "reader/font/font_entries.h"
#include "reader/font/glyph_order.h"

#include <algorithm>

namespace corvane {

namespace {

/// CIDs have 16 bits.
constexpr std::size_t cidCount = 65'536;

/// Codes looked at for those that have glyphs: a range of four bytes names four thousand millions.
constexpr std::size_t mostLooked = 4 * cidCount;

/// Without a CMap that can be read, codes are taken as CIDs: most fonts have it so.
std::shared_ptr<const CMap> readEncoding(DocumentCache& cache, const Object& font) {
    if (auto map = readCMapEntry(cache, font, "Encoding")) {
        return map;
    }
    return CMap::identity(nameEntry(cache, font, "Encoding").ends_with("-V"));
}

std::string readCollection(DocumentCache& cache, const Object& font, const Object& descendant) {
    const ObjectOwner info = entryOf(cache, descendant, "CIDSystemInfo");
    const std::string registry = stringOf(entryOf(cache, info.get(), "Registry").get());
    const std::string ordering = stringOf(entryOf(cache, info.get(), "Ordering").get());
    if (!registry.empty() && !ordering.empty() && ordering != "Identity") {
        return registry + "-" + ordering;
    }
    return predefinedCMaps(cache).collectionOf(nameEntry(cache, font, "Encoding"));
}

} // namespace

CompositeParts::CompositeParts(DocumentCache& cache, const Object& font, const Object& descendant)
    : encoding(readEncoding(cache, font)), toUnicode(readCMapEntry(cache, font, "ToUnicode")),
      collection(readCollection(cache, font, descendant)),
      glyphsOfCids(
          bytesOfStream(cache, entryOf(cache, descendant, "CIDToGIDMap").get(), 2 * cidCount)),
      isTrueType(nameEntry(cache, descendant, "Subtype") == "CIDFontType2"),
      widths(cache, descendant) {
    if (!collection.empty()) {
        collectionUnicode = predefinedCMaps(cache).unicodeOf(collection);
    }
}

CompositeFont::CompositeFont(CompositeParts parts, FontNames names, ShownProgram program)
    : ProgramFont(std::move(names), std::move(program)), parts_(std::move(parts)),
      isOrderKnown_(!isEmbedded() && parts_.isTrueType && parts_.collection.empty() &&
                    hasMacintoshOrder(facts().realFamily)) {}

/// The glyph that CIDToGIDMap names; 0: none.
GlyphNumber CompositeFont::mappedGlyph(std::uint32_t cid) const {
    if (parts_.glyphsOfCids.empty()) {
        return cid;
    }
    const std::size_t at = 2 * std::size_t{cid};
    if (at + 1 >= parts_.glyphsOfCids.size()) {
        return 0;
    }
    return std::to_integer<GlyphNumber>(parts_.glyphsOfCids[at]) << 8 |
           std::to_integer<GlyphNumber>(parts_.glyphsOfCids[at + 1]);
}

std::optional<GlyphNumber> CompositeFont::embeddedGlyph(std::uint32_t cid) const {
    if (parts_.glyphsOfCids.empty() || program()->kind() == ProgramKind::cidCff) {
        return program()->byCid(cid);
    }
    const GlyphNumber glyph = mappedGlyph(cid);
    return glyph != 0 && glyph < program()->glyphCount() ? std::optional(glyph) : std::nullopt;
}

/// What the document says of the code, whatever its glyph is, or its font is known to show; may be
/// empty.
std::u32string CompositeFont::statedText(StringCode code, std::uint32_t cid) const {
    std::u32string text;
    if (parts_.toUnicode != nullptr) {
        text = parts_.toUnicode->text(code.code).value_or(U"");
    }
    if (!isText(text) && parts_.collectionUnicode != nullptr) {
        text = parts_.collectionUnicode->text(cid).value_or(U"");
    }
    if (!isText(text) && isOrderKnown_) {
        text = characterInMacintoshOrder(mappedGlyph(cid));
    }
    return text;
}

CodeGlyph CompositeFont::describe(StringCode code) const {
    const std::uint32_t cid = parts_.encoding->cid(code).value_or(0);
    const std::u32string stated = statedText(code, cid);
    CodeGlyph described;
    FaceGlyph& shape = described.shape;
    if (program() == nullptr) {
        shape.glyph = std::nullopt;
    } else if (isEmbedded()) {
        shape.glyph = embeddedGlyph(cid);
    } else if (stated.size() == 1) {
        shape.glyph = program()->byCharacter(stated[0]);
    }

    MeaningChoice meaning([&] { return isBlank(shape.glyph); });
    const bool isOneLetter = !isVertical() || stated.size() == 1; // a column sets each apart
    meaning.offer(isOneLetter ? stated : U"");
    if (meaning.isOpen() && parts_.collectionUnicode != nullptr) {
        meaning.offer(parts_.collectionUnicode->text(cid).value_or(U""));
    }
    if (meaning.isOpen() && shape.glyph) {
        meaning.offer({program()->characterOf(*shape.glyph)});
    }
    described.isMeant = !meaning.isOpen();
    shape.text = meaning.textOr(cid);

    described.isFound = hasGlyph(described);
    if (!described.isFound && isEmbedded()) {
        shape.glyph = 0;
    }
    shape.width = parts_.widths.widthOf(cid) / 1000;
    shape.stretch = stretchOf(shape.glyph, shape.width);
    described.advance = shape.width;
    if (isVertical()) {
        const VerticalMetrics vertical = parts_.widths.verticalOf(cid);
        described.advance = -vertical.advance / 1000;
        // Letters of a column all take the same room; their outlines lie in it where they are seen.
        shape.width = columnAdvance;
        shape.shiftX = columnAdvance / 2 - vertical.originX / 1000;
        shape.shiftY = columnOrigin - vertical.originY / 1000;
    }
    described.isTyped = described.isFound && described.advance > 0;
    return described;
}

std::vector<StringCode> CompositeFont::typedCodes() const {
    std::vector<StringCode> codes;
    std::size_t looked = 0;
    for (const CMap::CidRange& range : parts_.encoding->cidRanges()) {
        for (std::uint64_t code = range.range.first; code <= range.range.last; ++code) {
            if (codes.size() >= cidCount || ++looked > mostLooked) {
                return codes;
            }
            const auto number = static_cast<std::uint32_t>(code);
            if (!isEmbedded() || embeddedGlyph(range.range.at(number))) {
                codes.push_back({.code = number, .length = range.length});
            }
        }
    }
    return codes;
}

} // namespace corvane
