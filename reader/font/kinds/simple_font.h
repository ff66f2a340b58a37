// Simple fonts: one byte is a code. Type 1, MMType1 and TrueType.
#pragma once

#include "reader/font/character_meaning.h"
#include "reader/font/glyph_choice.h"
#include "reader/font/kinds/program_font.h"
#include "reader/font/widths.h"

namespace corvane {

class SimpleFont : public ProgramFont {
public:
    SimpleFont(DocumentCache& cache, const Object& font, const Object& descriptor, FontNames names,
               ShownProgram shown, std::string_view baseFont);

    FontKind kind() const override { return FontKind::simple; }
    bool isVertical() const override { return false; }

protected:
    StringCode firstCode(std::span<const std::byte> string) const override;
    CodeGlyph describe(StringCode code) const override;
    std::vector<StringCode> typedCodes() const override;

private:
    GlyphSource source() const;
    MeaningChoice meaningOf(std::uint8_t code, const std::optional<GlyphNumber>& glyph) const;

    SimpleEncoding encoding_;
    SimpleWidths widths_;
    std::shared_ptr<const CMap> toUnicode_; ///< may be null
    bool isSymbolic_ = false;
    bool isDingbats_ = false;
};

} // namespace corvane
