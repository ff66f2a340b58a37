// A font of the machine that a save puts into the file, as far as text uses it.
#pragma once

#include "fonts/font_subset.h"
#include "fonts/open_type_font.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// One glyph of the font in the file.
struct NewGlyph {
    std::u32string text; ///< what it means, in the order of reading; empty: a part of another's
    std::uint32_t cid = 0;
};

/// Numbers of its objects; 0 while no text was written in it.
struct NewFontNumbers {
    std::int32_t font = 0;
    std::int32_t descendant = 0;
    std::int32_t descriptor = 0;
    std::int32_t program = 0;
    std::int32_t toUnicode = 0;
};

/// First glyphs are noted, while text is laid out; then `finish` makes the subset, which says the
/// codes.
class NewFont {
public:
    explicit NewFont(std::shared_ptr<const OpenTypeFont> font) : font_(std::move(font)) {}

    const OpenTypeFont& font() const { return *font_; }

    /// The first text that a glyph is noted with is what it means to readers.
    void note(GlyphNumber glyph, std::u32string_view text);
    /// Raises `fontFamily` where the font is too damaged.
    void finish();

    /// In thousandths of an em, as the file says it: with two digits.
    double width(GlyphNumber glyph) const;
    /// The two bytes that show a glyph that was noted.
    std::string code(GlyphNumber glyph) const;

    NewFontNumbers numbers;

    const std::map<GlyphNumber, NewGlyph>& glyphs() const { return glyphs_; }
    const std::vector<std::byte>& program() const { return program_; }

private:
    std::shared_ptr<const OpenTypeFont> font_;
    std::map<GlyphNumber, NewGlyph> glyphs_;
    std::vector<std::byte> program_;
};

} // namespace corvane
