#include "reader/group/art_place.h"

#include "host/callbacks.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

#include <cstdint>

namespace corvane {

GroupPlace placeIn(Art container) {
    std::uint8_t clipped = 0;
    callHost(slot::getGroupClipped, container, &clipped);
    if (clipped == 0) {
        return {Placement::inside, container};
    }
    const Art clip = firstChild(container);
    if (clip == Art::null) {
        failException(Exception::host);
    }
    return {Placement::behind, clip};
}

Art makeArt(ArtKind kind, Art container) {
    const GroupPlace place = placeIn(container);
    return newArt(kind, place.placement, place.reference);
}

Art firstContent(Art group) {
    const Art first = firstChild(group);
    std::uint8_t clipped = 0;
    callHost(slot::getGroupClipped, group, &clipped);
    return clipped != 0 && first != Art::null ? nextSibling(first) : first;
}

} // namespace corvane
