// Slots for layers and the art tree.
#include "app/artwork/slots/counted_text.h"
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

namespace corvane::answer {

HostError getNextLayer(Layer layer, Layer* next) {
    return guardedSlot([&](CallbackScope& scope) {
        Document& document = scope.document();
        target(next) = layer == Layer::null ? document.firstLayer() : document.nextLayer(layer);
    });
}

HostError getLayerInfo(Layer layer, LayerInfo* info) {
    return guardedSlot([&](CallbackScope& scope) {
        const LayerProperties& properties = scope.document().layerProperties(layer);
        LayerInfo& told = target(info);
        told = {};
        copyCounted(properties.title, told.title);
        told.visible = properties.visible;
        told.preview = properties.preview;
        told.locked = properties.locked;
        told.printing = properties.printing;
        told.dimmed = properties.dimmed;
    });
}

HostError getLayerArt(Layer layer, Art* art) {
    return guardedSlot([&](CallbackScope& scope) {
        Document& document = scope.document();
        target(art) = layer == Layer::null ? document.importArt() : document.layerArt(layer);
    });
}

HostError getArtType(Art art, ArtKind* kind) {
    return guardedSlot([&](CallbackScope& scope) { target(kind) = scope.document().kind(art); });
}

HostError getFirstChild(Art art, Art* child) {
    return guardedSlot([&](CallbackScope& scope) {
        // The path of a text object is the object itself, and holds no art.
        const bool isText = scope.document().kind(art) == ArtKind::text;
        target(child) = isText ? Art::null : scope.document().firstChild(art);
    });
}

HostError getNextSibling(Art art, Art* next) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(next) = scope.document().nextSibling(art); });
}

HostError newArt(ArtKind kind, Placement placement, Art reference, Art* made) {
    return guardedSlot([&](CallbackScope& scope) {
        Art& result = target(made);
        result = Art::null;
        result = scope.document().make(kind, placement, reference);
    });
}

HostError disposeArt(Art art) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().dispose(art); });
}

HostError reorderArt(Art art, Placement placement, Art reference) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().reorder(art, placement, reference); });
}

HostError duplicateArt(Art art, Placement placement, Art reference, Art* copy) {
    return guardedSlot([&](CallbackScope& scope) {
        Art& result = target(copy);
        result = Art::null;
        result = scope.document().duplicate(art, placement, reference);
    });
}

HostError getGroupClipped(Art group, std::uint8_t* clipped) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(clipped) = scope.document().clipped(group); });
}

HostError setGroupClipped(Art group, std::uint8_t clipped) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setClipped(group, clipped != 0); });
}

HostError setArtSource(Art art, const ArtSource* source) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setSource(art, target(source)); });
}

HostError getArtSource(Art art, ArtSource* source) {
    return guardedSlot([&](CallbackScope& scope) {
        target(source) = scope.document().source(art).value_or(ArtSource{});
    });
}

HostError newArtwork(Art* made) {
    return guardedSlot([&](CallbackScope& scope) {
        Art& result = target(made);
        result = Art::null;
        result = scope.document().makeArtwork();
    });
}

HostError disposeArtwork(Art artwork) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().disposeArtwork(artwork); });
}

} // namespace corvane::answer
