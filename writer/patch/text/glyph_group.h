// Groups that glyph procedures drew: how an edited one differs from what the page shows.
#pragma once

#include "writer/patch/compare/comparison.h"

namespace corvane {

/// Whether art is a group of paths and images alone, as glyph procedures draw.
bool isGlyphGroup(Art art);

/// `letters` where anything else differs than the place of the whole; gradients and patterns move
/// along with it.
ArtDifference compareGlyphs(Art was, Art is, PaintComparison& paints);

} // namespace corvane
