// Finds settings of a page that artwork cannot hold, and counts them as omissions.
#pragma once

#include "objects/stack.h"
#include "reader/document/cache.h"

namespace corvane {

struct ColourSpace;

/// The entries of an external graphics state (`gs`) that are not used.
void noteStateLosses(DocumentCache& cache, const Object& entries);

/// A rendering intent other than the one that a page begins with.
void noteIntentLoss(const Object& intent);

/// The profile and the ink of a colour space, and of the spaces within it.
void noteSpaceLosses(const ColourSpace& space);

/// The spaces that take the place of device spaces on the page in use (PDF Reference, 4.5.4).
void noteDefaultSpaces(DocumentCache& cache);

/// A stroke under a matrix by which its width depends on its direction.
void noteStrokeLoss(const RealMatrix& matrix);

} // namespace corvane
