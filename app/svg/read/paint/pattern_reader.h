// Patterns (SVG 1.1, 13.3).
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/paint/gradient_reader.h"

namespace corvane {

/// Reads a pattern and the art of its tile; null where it paints nothing. `fitsBox`: another box
/// gives another pattern.
PaintSource readPattern(pugi::xml_node server, const PaintUse& use, ReadingContext& context,
                        bool& fitsBox);

} // namespace corvane
