// Characters of glyphs by number, in well-known fonts that a document does not embed.
#pragma once

#include "fonts/font_program.h"

#include <string>
#include <string_view>

namespace corvane {

/// Whether the glyphs of the family's TrueType fonts begin in the Macintosh's order, as those of
/// the oldest families of Windows and the fonts made in their place do. "Arial"; case counts.
bool hasMacintoshOrder(std::string_view family);

/// The character of a glyph in that order (OpenType, "post", version 1.0), which is that of Mac OS
/// Roman. Empty for those of none, and behind glyph 225, where the families differ.
std::u32string characterInMacintoshOrder(GlyphNumber glyph);

} // namespace corvane
