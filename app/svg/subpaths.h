// A path and a compound path seen alike: subpaths under one style.
#pragma once

#include "app/artwork/document.h"

namespace corvane {

inline bool isShape(const Document& document, Art art) {
    const ArtKind kind = document.kind(art);
    return kind == ArtKind::path || kind == ArtKind::compound;
}

/// Calls `use(Art path)` for a path itself, or for each path of a compound path in the order in
/// which they were drawn: from the back.
template <class Use>
void forEachSubpath(const Document& document, Art shape, Use use) {
    if (document.kind(shape) != ArtKind::compound) {
        use(shape);
        return;
    }
    for (Art path = document.lastChild(shape); path != Art::null;
         path = document.previousSibling(path)) {
        use(path);
    }
}

/// The path whose style and flags hold for the whole shape: itself, or the first of a compound
/// path; null where that is empty.
inline Art leadingPath(const Document& document, Art shape) {
    return document.kind(shape) == ArtKind::compound ? document.firstChild(shape) : shape;
}

} // namespace corvane
