// Paths and compound paths: construction, style and painting.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

void pathWorks(Walk& walk, Art path);
/// All subpaths at once, in the style of the first child.
void compoundWorks(Walk& walk, Art compound);
/// Makes the paths that `clip` is or holds the clip of what follows, and paints none of them.
void clipWorks(Walk& walk, Art clip);

} // namespace corvane
