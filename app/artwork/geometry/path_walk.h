// All art, or all paths, that a piece of art holds, without recursion.
#pragma once

#include "app/artwork/art_kinds.h"
#include "app/artwork/document.h"

namespace corvane {

/// The art after `art` of all from `top` down, each before what it holds; null after the last.
inline Art following(const Document& document, Art art, Art top) {
    if (artTraits(document.kind(art)).holdsArt) {
        if (const Art child = document.firstChild(art); child != Art::null) {
            return child;
        }
    }
    while (art != top) {
        if (const Art next = document.nextSibling(art); next != Art::null) {
            return next;
        }
        art = document.parent(art);
    }
    return Art::null;
}

/// Calls `use(Art path)` for `top` itself or every path in it. `use` may change the paths.
template <class Use>
void forEachPath(const Document& document, Art top, Use use) {
    for (Art art = top; art != Art::null; art = following(document, art, top)) {
        if (artTraits(document.kind(art)).isOutline) {
            use(art);
        }
    }
}

} // namespace corvane
