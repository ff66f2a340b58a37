// Slots for what groups and layers stand for in the file.
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

#include <string>

namespace corvane::answer {

namespace {

LayerProperties propertiesOf(const LayerInfo& info, LayerRole role) {
    LayerProperties layer;
    for (std::uint8_t i = 0; i < info.title[0]; ++i) {
        layer.title += static_cast<char>(info.title[i + 1]);
    }
    layer.visible = info.visible != 0;
    layer.preview = info.preview != 0;
    layer.locked = info.locked != 0;
    layer.printing = info.printing != 0;
    layer.dimmed = info.dimmed != 0;
    layer.role = role;
    return layer;
}

} // namespace

HostError setForm(Art group, const FormFacts* facts) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setForm(group, target(facts)); });
}

HostError getForm(Art group, FormFacts* facts) {
    return guardedSlot([&](CallbackScope& scope) {
        target(facts) = scope.document().form(group).value_or(FormFacts());
    });
}

HostError addContentLayer(const ContentLayerFacts* facts, ContentLayer* layer) {
    return guardedSlot([&](CallbackScope& scope) {
        ContentLayer& result = target(layer);
        result = ContentLayer::null;
        result = scope.document().contentLayers().add(target(facts));
    });
}

HostError getContentLayer(ContentLayer layer, ContentLayerFacts* facts) {
    return guardedSlot([&](CallbackScope& scope) {
        target(facts) = scope.document().contentLayers().facts(layer);
    });
}

HostError setGroupLayer(Art group, ContentLayer layer) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().setGroupLayer(group, layer); });
}

HostError getGroupLayer(Art group, ContentLayer* layer) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(layer) = scope.document().groupLayer(group); });
}

HostError addLayer(const LayerInfo* info, LayerRole role, Layer* made) {
    return guardedSlot([&](CallbackScope& scope) {
        Layer& result = target(made);
        result = Layer::null;
        if (role != LayerRole::page && role != LayerRole::annotations) {
            throw ArtworkError("there is no such role of a layer");
        }
        result = scope.document().addLayer(propertiesOf(target(info), role));
    });
}

HostError getLayerRole(Layer layer, LayerRole* role) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(role) = scope.document().layerProperties(layer).role; });
}

} // namespace corvane::answer
