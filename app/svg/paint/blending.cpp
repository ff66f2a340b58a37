#include "app/svg/paint/blending.h"

namespace corvane {

namespace {

bool holdsBlending(const Document& document, Art top) {
    for (Art art = document.firstChild(top); art != Art::null;) {
        if (document.appearance(art).blend != BlendMode::normal) {
            return true;
        }
        Art next = document.kind(art) == ArtKind::group ? document.firstChild(art) : Art::null;
        while (next == Art::null && art != top) {
            next = document.nextSibling(art);
            art = document.parent(art);
        }
        art = next;
    }
    return false;
}

} // namespace

bool blends(const Document& document) {
    for (Layer layer = document.firstLayer(); layer != Layer::null;
         layer = document.nextLayer(layer)) {
        if (document.layerProperties(layer).role != LayerRole::annotations &&
            holdsBlending(document, document.layerArt(layer))) {
            return true;
        }
    }
    return false;
}

} // namespace corvane
