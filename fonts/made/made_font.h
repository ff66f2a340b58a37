// A fresh OpenType font of some glyphs, for programs that refuse the font programs of documents.
#pragma once

#include "fonts/outline.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

struct MadeGlyph {
    GlyphOutline outline;
    double advance = 0; ///< ems
    /// What it means: one character, by the cmap; or several, by a substitution for ligatures
    /// (features ccmp and liga). Of glyphs that mean the same the first counts.
    std::u32string text;
};

struct MadeFont {
    std::string family; ///< UTF-8
    /// What styles that ask for this font say too: a font that denies it would be made bold or
    /// slanted once more.
    std::int32_t weight = 400; ///< 100 to 900
    bool italic = false;
    double ascent = 0.8;
    double descent = 0.2; ///< below the baseline, positive
    std::vector<MadeGlyph> glyphs;
};

/// Units in an em of every font made: advances and shifts that are multiples of 1/1000 em are
/// exact.
inline constexpr int madeUnits = 4000;

/// Ems from the origin; coordinates beyond are clamped. CFF writes steps between points in 16 bits.
inline constexpr double madeReach = 4.0;

/// Further glyphs are left out: their numbers and those of the blank ones have 16 bits.
inline constexpr std::size_t mostMadeGlyphs = 60'000;

/// The font as a file: CFF outlines, cmap, ligatures, names. The same font makes the same bytes.
/// Glyph 0 is a blank one for what is missing, and those of the font follow in their order, from
/// 1. Characters of ligatures that no glyph means alone get blank glyphs behind them.
std::vector<std::byte> writeMadeFont(const MadeFont&);

} // namespace corvane
