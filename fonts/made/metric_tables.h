// The tables of a made font about its measures: head, hhea, hmtx, maxp, OS/2, post.
#pragma once

#include "fonts/made/made_glyphs.h"
#include "fonts/made/table_bytes.h"

#include <span>

namespace corvane {

struct FontMeasures {
    UnitBox box; ///< of all glyphs
    std::int32_t ascent = 0;
    std::int32_t descent = 0; ///< positive
    std::int32_t longestAdvance = 0;
    std::int32_t meanAdvance = 0;
    std::uint32_t firstCharacter = 0; ///< 0xFFFF for those beyond
    std::uint32_t lastCharacter = 0;
    std::uint32_t context = 1; ///< characters of the longest ligature
    std::int32_t weight = 400;
    bool isBold = false;
    bool isItalic = false;
};
FontMeasures measure(const MadeFont& font, const GlyphOrder& order);

/// Without its sum over the file, which stands at `headSumPlace`.
TableBytes headTable(const FontMeasures& measures);
inline constexpr std::size_t headSumPlace = 8;

TableBytes hheaTable(const FontMeasures& measures, std::span<const UnitGlyph> glyphs);
TableBytes hmtxTable(std::span<const UnitGlyph> glyphs);
TableBytes maxpTable(std::size_t glyphs);
TableBytes os2Table(const FontMeasures& measures);
TableBytes postTable();

} // namespace corvane
