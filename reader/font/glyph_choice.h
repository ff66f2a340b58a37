// Which glyph of a font program a code of a simple font shows.
#pragma once

#include "fonts/font_program.h"
#include "reader/font/kinds/simple_encoding.h"

#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

/// What the choice goes by.
struct GlyphSource {
    const FontProgram* program = nullptr; ///< may be null
    const SimpleEncoding* encoding = nullptr;
    bool isSymbolic = false; ///< by the Flags of the descriptor
    bool isEmbedded = false; ///< else a font in its place, whose glyphs go by characters
    bool isDingbats = false; ///< names are those of ZapfDingbats
};

/// Nothing where the program has no glyph for the code.
std::optional<GlyphNumber> chooseGlyph(const GlyphSource& source, std::uint8_t code);

/// The characters that a name of a glyph means in this font; may be empty.
std::u32string charactersOfGlyph(const GlyphSource& source, std::string_view name);

} // namespace corvane
