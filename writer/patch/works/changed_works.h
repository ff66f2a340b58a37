// An object that an edit changed, drawn in the user space and the state of the page's own bytes.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/art/walk.h"
#include "writer/patch/compare/comparison.h"
#include "writer/patch/patch_tools.h"

namespace corvane {

/// The painted path of the page that an object comes from.
struct PathSource {
    TraceIndex event = 0;
    Art art = Art::null; ///< what its bytes make
};

/// By how much what the path is painted with moves on the artboard, if it lies on the page: as the
/// path did, where it moved as a whole. Gradients and patterns that the artwork shows are where it
/// has them.
PageMovement movementOfPaint(const PatchTools& tools, const PathSource& source, Art art,
                             const ArtDifference& difference);

/// Writes the parts of the stroke that differ; lengths in user space, which that factor leads to
/// the artboard.
void strokeWorks(Walk& walk, const PathStyle& style, const ArtDifference& difference, double scale);

/// Sets the soft mask that a style needs, under the CTM in force.
void maskInUserSpace(Walk& walk, const PathStyle& style, const RealMatrix& ctm);

/// Writes what the state of the page has otherwise, the path, and the operator that paints it:
/// where a part did not change, the page's own bytes. The state and the CTM are those of the path;
/// the CTM must have an inverse.
void changedWorks(PatchTools& tools, const PathSource& source, Art art, ArtDifference difference);

} // namespace corvane
