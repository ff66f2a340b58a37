// By which matrix an object was moved.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <optional>

namespace corvane {

/// The matrix that leads from the points of one piece of art to those of another: a path, an image,
/// a group of them, within
/// an editor's rounding; nothing where there is none.
std::optional<RealMatrix> movementOf(Art was, Art is);

} // namespace corvane
