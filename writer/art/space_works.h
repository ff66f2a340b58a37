// Spaces that the content enters.
#pragma once

#include "host/matrix.h"
#include "writer/art/walk.h"

namespace corvane {

/// Writes a cm, without what rounding left in the matrix.
void spaceWorks(Walk& walk, const RealMatrix& matrix);

} // namespace corvane
