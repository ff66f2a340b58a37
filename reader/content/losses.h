// What settings of a page do that artwork cannot hold: found where they are made, and counted as
// omissions.
#pragma once

#include "objects/stack.h"
#include "reader/document/cache.h"

namespace corvane {

struct ColourSpace;

/// Of an external graphics state (`gs`), for what is not taken from it.
void noteStateLosses(DocumentCache& cache, const Object& entries);

/// Of a rendering intent other than the one that a page begins with.
void noteIntentLoss(const Object& intent);

/// Of a space that colours are given in, and of those within it.
void noteSpaceLosses(const ColourSpace& space);

/// Of the spaces that take the place of device spaces on the page in use (PDF Reference, 4.5.4).
void noteDefaultSpaces(DocumentCache& cache);

/// Of a stroke of that matrix: whether its width depends on its direction.
void noteStrokeLoss(const RealMatrix& matrix);

/// Of a point of a path, on the artboard, that artwork cannot hold where it is.
void notePointLoss(RealPoint point);

} // namespace corvane
