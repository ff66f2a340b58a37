// Text that clips a group: a text object, or a group of nothing but text objects.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/subpaths.h"

namespace corvane {

inline bool isTextClip(const Document& document, Art clip) {
    if (document.kind(clip) != ArtKind::group) {
        return svgObject(document, clip) == SvgObject::text;
    }
    for (Art text = document.firstChild(clip); text != Art::null;
         text = document.nextSibling(text)) {
        if (svgObject(document, text) != SvgObject::text) {
            return false;
        }
    }
    return document.firstChild(clip) != Art::null;
}

/// Calls `use(Art text)` for each of its text objects, from the back to the front.
template <class Use>
void forEachClipText(const Document& document, Art clip, Use use) {
    if (document.kind(clip) == ArtKind::text) {
        use(clip);
        return;
    }
    for (Art text = document.lastChild(clip); text != Art::null;
         text = document.previousSibling(text)) {
        use(text);
    }
}

} // namespace corvane
