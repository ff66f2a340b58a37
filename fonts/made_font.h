// A fresh OpenType font of some glyphs, for programs that refuse the font programs of documents.
#pragma once

#include "fonts/outline.h"

#include <cstddef>
#include <string>
#include <vector>

namespace corvane {

struct MadeGlyph {
    GlyphOutline outline;
    double advance = 0; ///< ems
    /// What it means: one character, by the cmap; or several, by a substitution for ligatures
    /// (features ccmp and liga). Two glyphs may not mean the same.
    std::u32string text;
};

struct MadeFont {
    std::string family; ///< UTF-8; style name Regular
    double ascent = 0.8;
    double descent = 0.2; ///< below the baseline, positive
    std::vector<MadeGlyph> glyphs;
};

/// Units in an em of every font made: advances and shifts that are multiples of 1/1000 em are
/// exact.
inline constexpr int madeUnits = 4000;

/// The font as a file: CFF outlines, cmap, ligatures, names. The same font makes the same bytes.
/// Characters of ligatures that no glyph means alone get an empty glyph.
std::vector<std::byte> writeMadeFont(const MadeFont&);

} // namespace corvane
