#include "reader/content/art.h"

#include "runtime/callbacks.h"

namespace corvane {

Art firstChild(Art art) {
    Art child = Art::null;
    callHost(slot::getFirstChild, art, &child);
    return child;
}

Art nextSibling(Art art) {
    Art next = Art::null;
    callHost(slot::getNextSibling, art, &next);
    return next;
}

ArtKind artKind(Art art) {
    ArtKind kind = ArtKind::unknown;
    callHost(slot::getArtType, art, &kind);
    return kind;
}

bool isTextClip(Art clip) {
    const ArtKind kind = artKind(clip);
    if (kind != ArtKind::group) {
        return kind == ArtKind::text;
    }
    Art text = firstChild(clip);
    bool isText = text != Art::null;
    for (; isText && text != Art::null; text = nextSibling(text)) {
        isText = artKind(text) == ArtKind::text;
    }
    return isText;
}

Art newArt(ArtKind kind, Placement placement, Art reference) {
    Art made = Art::null;
    callHost(slot::newArt, kind, placement, reference, &made);
    if (made == Art::null) {
        failException(Exception::host);
    }
    return made;
}

} // namespace corvane
