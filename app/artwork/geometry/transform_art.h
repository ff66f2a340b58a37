// Moves, turns and stretches art.
#pragma once

#include "app/artwork/document.h"
#include "host/matrix.h"

namespace corvane {

/// Maps the points of all paths that the art holds and the places of all text and images, and
/// scales line widths, dashes and letters by the mean scale. Gradients and patterns stay where they
/// are. Throws `ArtworkError` past the budget; the art before that one is then mapped already.
void transformArt(Document&, Art, const RealMatrix&);

} // namespace corvane
