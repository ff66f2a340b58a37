// Styles of text: what differs from the shadow is written, or kept for `renderWorks`.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

/// The paint, font, letters and paragraph of a run. Raises `structure` where the host does not list
/// its font.
void runsStyleWorks(Walk& walk, RunHandle run);
/// How a line was set.
void lineStyleWorks(Walk& walk, LineHandle line);

/// Font, spacing and render mode, in front of letters.
void renderWorks(Walk& walk);
/// The text matrix.
void positionWorks(Walk& walk, const Matrix& matrix);

} // namespace corvane
