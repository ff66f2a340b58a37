// What a group holds, as a list.
#pragma once

#include "host/artwork.h"
#include "runtime/charged_list.h"

#include <cstdint>

namespace corvane {

/// A piece of art in a group, or the group itself.
struct GroupPart {
    Art art = Art::null;
    ArtKind kind = ArtKind::path;
    bool isClipped = false;
    std::int32_t depth = 0;
    /// As far as the tree goes.
    friend bool operator==(const GroupPart& a, const GroupPart& b) {
        return a.kind == b.kind && a.isClipped == b.isClipped && a.depth == b.depth;
    }
};

/// From the back to the front; a group comes in front of what it holds. Compound paths are whole.
ChargedList<GroupPart> partsOf(Art group);

} // namespace corvane
