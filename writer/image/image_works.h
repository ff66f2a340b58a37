// Images as the art walk draws them.
#pragma once

#include "host/image.h"
#include "writer/art/walk.h"

namespace corvane {

PlacedImage placedImage(Art art);

/// Draws a placed object in the space of the artboard. Raises `unpatchable` where images cannot be
/// drawn, or the host does not have this one.
void drawnImageWorks(Walk& walk, Art art);

} // namespace corvane
