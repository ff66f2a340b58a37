// The glyphs of a made font in its own units, and their order.
#pragma once

#include "fonts/made/made_font.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

namespace corvane {

struct UnitPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;
    friend constexpr bool operator==(const UnitPoint&, const UnitPoint&) = default;
};

struct UnitBox {
    std::int32_t left = 0;
    std::int32_t bottom = 0;
    std::int32_t right = 0;
    std::int32_t top = 0;
};

/// A glyph as it stands in the file: `outline` belongs to the font that it is made of, and null is
/// blank.
struct UnitGlyph {
    const GlyphOutline* outline = nullptr;
    std::int32_t advance = 0;
    UnitBox box; ///< of all points; zeros where blank
    std::u32string text;
};

/// Units of so many ems, within `reach` either way.
std::int32_t unitsOf(double ems, std::int32_t reach);

/// Of a point of an outline, clamped to `madeReach`.
UnitPoint unitsOf(const OutlinePoint& point);

/// Glyph 0 is the one of missing glyphs; those of the font follow in their order, then blank ones
/// for characters that only ligatures have.
struct GlyphOrder {
    std::vector<UnitGlyph> glyphs;
    std::map<char32_t, std::uint16_t> byCharacter;
};
GlyphOrder orderGlyphs(const MadeFont& font);

/// Whether the font counts as bold where there are only two weights.
inline bool isBold(const MadeFont& font) {
    return font.weight >= 600;
}

} // namespace corvane
