// Composite fonts (Type 0): a CMap divides strings into codes and gives them CIDs.
//
// Source: PDF Reference, 5.6.
#pragma once

#include "reader/font/kinds/program_font.h"
#include "reader/font/widths.h"

#include <string>

namespace corvane {

/// What is read of the dictionaries of a composite font.
struct CompositeParts {
    /// `descendant` may be null.
    CompositeParts(DocumentCache& cache, const Object& font, const Object& descendant);

    std::shared_ptr<const CMap> encoding;          ///< never null
    std::shared_ptr<const CMap> toUnicode;         ///< may be null
    std::string collection;                        ///< "Adobe-Japan1", or empty
    std::shared_ptr<const CMap> collectionUnicode; ///< texts of its CIDs; may be null
    std::vector<std::byte> glyphsOfCids;           ///< CIDToGIDMap: two bytes each; empty: the same
    bool isTrueType = false;                       ///< CIDs lead to glyphs of such a program
    CidWidths widths;
};

class CompositeFont : public ProgramFont {
public:
    CompositeFont(CompositeParts parts, FontNames names, ShownProgram program);

    FontKind kind() const override { return FontKind::composite; }
    bool isVertical() const override { return parts_.encoding->isVertical(); }

protected:
    StringCode firstCode(std::span<const std::byte> string) const override {
        return parts_.encoding->firstCode(string);
    }
    CodeGlyph describe(StringCode code) const override;
    std::vector<StringCode> typedCodes() const override;

private:
    GlyphNumber mappedGlyph(std::uint32_t cid) const;
    std::optional<GlyphNumber> embeddedGlyph(std::uint32_t cid) const;
    std::u32string statedText(StringCode code, std::uint32_t cid) const;

    CompositeParts parts_;
    bool isOrderKnown_; ///< of the glyphs of a program that is not there
};

} // namespace corvane
