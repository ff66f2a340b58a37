// Outlines as charstrings of CFF: technical note 5177, "The Type 2 Charstring Format".
#pragma once

#include "fonts/made/made_glyphs.h"
#include "fonts/made/table_bytes.h"

namespace corvane {

/// Of a font whose default and nominal widths are 0. Points are rounded where they stand, so errors
/// do not add up.
TableBytes charstringOf(const UnitGlyph& glyph);

} // namespace corvane
