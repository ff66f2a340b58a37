// Paths and compound paths: construction, style and painting.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

void pathWorks(Walk& walk, Art path);
/// All subpaths at once, in the style of the first child.
void compoundWorks(Walk& walk, Art compound);
/// Makes `clip`, a path or art that holds paths, the clip of what follows; paints none of it.
void clipWorks(Walk& walk, Art clip);

} // namespace corvane
