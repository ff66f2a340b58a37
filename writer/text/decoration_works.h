// Lines along letters, as paths.
#pragma once

#include "host/text.h"
#include "writer/art/walk.h"
#include "writer/text/line_layout.h"

namespace corvane {

/// Where lines lie: a line through letters covers them, the others are covered.
enum class LineDepth : std::uint8_t { behindLetters, beforeLetters };

/// Writes the lines of a run; its paint is in force, and still is after it. `back` leads from the
/// artboard to the space in force. Raises `unpatchable` where a line has no place there.
void decorationWorks(Walk& walk, const PlacedRun& placed, const TextRun& run,
                     const RealMatrix& back, LineDepth depth);

} // namespace corvane
