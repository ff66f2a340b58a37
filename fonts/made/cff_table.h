// The table "CFF " of a made font: technical note 5176, "The Compact Font Format".
#pragma once

#include "fonts/made/made_glyphs.h"
#include "fonts/made/table_bytes.h"

#include <span>
#include <string>

namespace corvane {

/// `name` is the PostScript name.
TableBytes cffTable(const std::string& name, std::span<const UnitGlyph> glyphs, const UnitBox& box);

} // namespace corvane
