// The table "GSUB" of a made font: a glyph in place of several, for what one glyph means together.
#pragma once

#include "fonts/made/made_glyphs.h"
#include "fonts/made/table_bytes.h"

namespace corvane {

/// Empty where no glyph means several characters, and letters need not be kept in their forms
/// (`standing_tables.h`).
TableBytes ligatureTable(const GlyphOrder& order);

/// Characters of the longest ligature, at least 1.
std::size_t longestLigature(const GlyphOrder& order);

} // namespace corvane
