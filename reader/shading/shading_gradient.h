// Shadings along a line or between circles, as gradients of the host.
#pragma once

#include "host/artwork.h"
#include "reader/content/progress.h"
#include "reader/shading/shading.h"

namespace corvane {

/// Whether a gradient can say all of it: axial ones, and radial ones of which one circle holds the
/// other. Between other circles the colours lie in a cone, which SVG does not have.
bool isGradient(const Shading& shading);

/// Tells the host such a shading; `matrix` leads from the shading's space to the artboard. As a
/// pattern it has its background where it does not extend, by `sh` nothing. Raises `host`.
Colour gradientOf(ContentProgress& progress, const Shading& shading, const RealMatrix& matrix,
                  bool asPattern);

} // namespace corvane
