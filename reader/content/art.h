// Common calls on the host's art.
#pragma once

#include "host/artwork.h"

namespace corvane {

// All raise `host` where the host fails.

/// Null where there is none.
Art firstChild(Art art);
Art nextSibling(Art art);
ArtKind artKind(Art art);
/// Whether what clips a group is text: a text object, or a group of nothing but text objects.
bool isTextClip(Art clip);
/// Never null.
Art newArt(ArtKind kind, Placement placement, Art reference);

} // namespace corvane
