// From FreeType's points to contours of lines and cubic curves.
#pragma once

#include "fonts/free_type.h"
#include "fonts/outline.h"

namespace corvane {

/// Coordinates times `scale`. Quadratic curves become the cubic curves of the same shape. Contours
/// without a step go: TrueType has them for anchors.
GlyphOutline outlineOf(FT_Outline&, double scale);

} // namespace corvane
