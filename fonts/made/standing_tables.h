// Tables that keep letters as the page has them. Where a font says nothing of its marks and of the
// forms of Arabic letters, programs that set text move the ones and choose the others themselves.
#pragma once

#include "fonts/made/made_glyphs.h"
#include "fonts/made/table_bytes.h"

namespace corvane {

/// Whether a program may do so: there are marks, or letters of scripts from the right.
bool wantsStanding(const GlyphOrder& order);

/// "GDEF": every glyph is a letter, so none loses its width.
TableBytes glyphClassTable(std::size_t glyphs);

/// "GPOS": nothing is moved.
TableBytes positionTable();

} // namespace corvane
