// About how far text reaches.
#pragma once

#include "host/artwork.h"
#include "writer/patch/art_extent.h"

namespace corvane {

/// Where the letters of a text object may be seen, as if each were an em wide and high, which few
/// are; fonts are not asked. Enough to say whether something may lie in a place, and not whether a
/// clip cuts it.
ArtExtent reachOfText(Art text);

} // namespace corvane
