// Boxes as paths, and paths as boxes.
#pragma once

#include "host/artwork.h"
#include "host/extension.h"
#include "host/matrix.h"

namespace corvane {

/// Makes a path a closed one along the edges of the box, led to the artboard by the matrix.
void setCorners(Art path, const Box& box, const RealMatrix& matrix = {});

/// A box around a path, or all paths that art holds; control points count. Without area where there
/// are no points.
Box boxOfArt(Art art);

} // namespace corvane
