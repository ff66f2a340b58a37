// Fills that the host draws: gradients through drawing procedures, patterns tile by tile.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

// While the host draws it stands between the walk and what it calls back. What that raises is kept,
// further calls do nothing, and the code is raised again when the host returns.

/// The gradient of the path's fill. Gradients are drawn over the bounds of the path and beyond.
void blendedWorks(Walk& walk, Art path);
/// The pattern of the path's fill. Patterns within patterns deeper than the budget raise `limit`.
void patternWorks(Walk& walk, Art path);

} // namespace corvane
