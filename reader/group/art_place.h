// Where art goes in a group: a clipped group's first child is its clip, and stays so.
#pragma once

#include "host/artwork.h"

namespace corvane {

struct GroupPlace {
    Placement placement = Placement::inside;
    Art reference = Art::null;
};

/// Where new art goes in a container: the rule for clipped groups.
GroupPlace placeIn(Art container);

/// A new object of that kind in `container`, by the rule for clipped groups.
Art makeArt(ArtKind kind, Art container);

/// What stands frontmost in a group, its clip aside; null: nothing.
Art firstContent(Art group);

} // namespace corvane
