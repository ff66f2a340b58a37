#include "writer/art/outline.h"

#include "reader/content/art.h"
#include "runtime/exception.h"
#include "writer/art/art_stack.h"

namespace corvane {

ChargedList<Subpath> subpathsWithin(Art art) {
    ChargedList<Subpath> subpaths;
    ArtStack pending;
    pending.push(art);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            continue;
        }
        switch (artKind(step.art)) {
        case ArtKind::path:
            subpaths.push(subpathOf(step.art));
            break;
        case ArtKind::unknown:
        case ArtKind::group:
        case ArtKind::compound:
            pending.enter(firstChild(step.art), ArtStep::What::end);
            break;
        default:
            failException(Exception::type);
        }
    }
    return subpaths;
}

Art leadingPath(Art art) {
    return artKind(art) == ArtKind::path ? art : firstChild(art);
}

} // namespace corvane
