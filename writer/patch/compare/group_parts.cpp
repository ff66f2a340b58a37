#include "writer/patch/compare/group_parts.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"

namespace corvane {

ChargedList<GroupPart> partsOf(Art group) {
    ChargedList<GroupPart> parts;
    ArtStack pending;
    pending.push(group);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            continue;
        }
        GroupPart part{.art = step.art, .kind = artKind(step.art), .depth = pending.depth()};
        if (part.kind == ArtKind::group) {
            std::uint8_t clipped = 0;
            callHost(slot::getGroupClipped, step.art, &clipped);
            part.isClipped = clipped != 0;
            pending.enter(firstChild(step.art), ArtStep::What::end);
        }
        parts.push(part);
    }
    return parts;
}

} // namespace corvane
