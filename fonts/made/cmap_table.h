// The table "cmap" of a made font: characters to glyphs.
#pragma once

#include "fonts/made/made_glyphs.h"
#include "fonts/made/table_bytes.h"

namespace corvane {

/// Format 4, and format 12 where characters beyond 16 bits need it.
TableBytes cmapTable(const std::map<char32_t, std::uint16_t>& glyphs);

} // namespace corvane
