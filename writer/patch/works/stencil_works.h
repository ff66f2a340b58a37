// Stencils in a gradient or pattern: their own bytes where the artwork has them, or new art.
#pragma once

#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/comparison.h"
#include "writer/patch/patch_tools.h"

namespace corvane {

/// By how much what a stencil is painted with moves on the artboard, if it lies on the page.
PageMovement movementOfStencil(const PatchTools& tools, const PaintedArt& was, Art is,
                               const ArtDifference& difference);

/// Writes what a stencil became, in the state and under the CTM of its operator, which must have an
/// inverse where anything differs. Where its mask is another one, or does not move along, it is a
/// path like any other.
void stencilWorks(PatchTools& tools, const PaintedArt& was, const EditedObject& is,
                  const ArtDifference& difference);

} // namespace corvane
