#include "writer/art/outline.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"

#include <algorithm>

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

PathStyle leadingStyle(Art art) {
    PathStyle style;
    if (const Art path = leadingPath(art); path != Art::null) {
        callHost(slot::getPathStyle, path, &style);
    }
    return style;
}

std::span<const Segment> SegmentReader::read(std::int32_t first) {
    const auto count = std::min(subpath_.count - first, static_cast<std::int32_t>(block_.size()));
    callHost(slot::getPathSegments, subpath_.art, first, count, block_.data());
    return std::span(block_).first(static_cast<std::size_t>(count));
}

} // namespace corvane
