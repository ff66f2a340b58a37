// A font of the machine that a save puts into the file, as far as text uses it.
#pragma once

#include "fonts/font_subset.h"
#include "fonts/made/open_type_font.h"

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// One code of the font in the file: a glyph, and what it means.
struct NewCode {
    GlyphNumber glyph = 0;
    std::u32string text; ///< in the order of reading; empty: a part of what another code means
    std::uint32_t cid = 0;
    std::uint32_t code = 0;
};

/// No code: a blank that a font does not have.
inline constexpr std::uint32_t notNoted = 0xFFFF'FFFF;

/// Numbers of its objects; 0 while no text was written in it.
struct NewFontNumbers {
    std::int32_t font = 0;
    std::int32_t descendant = 0;
    std::int32_t descriptor = 0;
    std::int32_t program = 0;
    std::int32_t toUnicode = 0;
    std::int32_t encoding = 0; ///< written where codes are not CIDs
};

/// First glyphs are noted, while text is laid out; then `finish` makes the subset, which says the
/// codes. A glyph that means several texts, such as one for Greek and mathematics, has a code for
/// each: the first is its CID.
class NewFont {
public:
    NewFont(std::shared_ptr<const OpenTypeFont> font, bool isVertical)
        : font_(std::move(font)), isVertical_(isVertical) {}

    const OpenTypeFont& font() const { return *font_; }
    /// For columns: each letter an em high, as documents have it that say nothing of it.
    bool isVertical() const { return isVertical_; }

    /// The number of the code that shows the glyph and reads as the text.
    std::uint32_t note(GlyphNumber glyph, std::u32string_view text);
    /// Raises `fontFamily` where the font is too damaged.
    void finish();

    /// In thousandths of an em, as the file says it: with two digits.
    double width(GlyphNumber glyph) const;
    /// The two bytes of a code that was noted.
    std::string code(std::uint32_t noted) const;

    NewFontNumbers numbers;

    std::span<const NewCode> codes() const { return codes_; }
    bool codesAreCids() const { return codesAreCids_; }
    const std::vector<std::byte>& program() const { return program_; }

private:
    std::shared_ptr<const OpenTypeFont> font_;
    bool isVertical_;
    std::map<std::pair<GlyphNumber, std::u32string>, std::uint32_t> noted_;
    std::vector<NewCode> codes_; ///< as they are numbered
    bool codesAreCids_ = true;
    std::vector<std::byte> program_;
};

} // namespace corvane
