// Shadings that no gradient says, as images of the resolution that the page needs; and those that
// only a part of the page shows, as patterns of one tile.
#pragma once

#include "host/image.h"
#include "reader/shading/shading.h"

#include <optional>

namespace corvane {

struct Interpreter;

/// The shading as an image over a part of `area`, a box on the artboard. `entry` is the object that
/// says it, `matrix` leads from its space to the artboard. Nothing where no part of it is seen.
std::optional<PlacedImage> shadingImage(Interpreter& interpreter, const Shading& shading,
                                        const Object& entry, const RealMatrix& matrix,
                                        const Box& area, bool asPattern);

/// Such an image, or a gradient that is cut to the shading's box, as a pattern of one tile.
std::optional<Colour> shadingTile(Interpreter& interpreter, const Shading& shading,
                                  const Object& entry, const RealMatrix& matrix);

} // namespace corvane
