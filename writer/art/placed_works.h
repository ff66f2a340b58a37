// Placed art of the original profile: files that the artwork is linked to.
#pragma once

#include "filters/filter.h"
#include "host/artwork.h"
#include "writer/art/walk.h"

#include <optional>

namespace corvane {

/// The file that placed art is linked to, to be read from its first byte. Raises `host` where the
/// host does not know it, `io` where its folder is gone, and what opening raises.
Chain openPlacedFile(Art placed);

/// The "%%BoundingBox" of the file: the first one that is four numbers and not put off to its end.
std::optional<Rect> boundsWorks(Art placed);

/// Draws the image that the file becomes (writer/image/mask_works.h). A file without bounds is left
/// out.
void placedWorks(Walk& walk, Art placed);

} // namespace corvane
