// What `sh` paints: its own bytes where the artwork has it, or another paint in its place.
#pragma once

#include "writer/patch/compare/comparison.h"
#include "writer/patch/patch_tools.h"

namespace corvane {

struct PaintedArt;

/// Writes what an object of the artwork became, under the CTM of the operator, which must have an
/// inverse. The area is a clip then: the clip in force may show more.
void shadingWorks(PatchTools& tools, const PaintedArt& was, Art is,
                  const ArtDifference& difference);

} // namespace corvane
