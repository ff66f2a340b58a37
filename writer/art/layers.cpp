#include "writer/art/layers.h"

#include "reader/form/form_drawing.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "writer/art/style_works.h"

namespace corvane {

namespace {

/// Whether a layer is drawn on the page.
bool isDrawn(Layer layer, const LayerInfo& info) {
    if (!rules().hiddenLayersLeftOut) {
        return true;
    }
    return info.printing != 0 && (info.visible != 0 || layerOf(artOf(layer)) != ContentLayer::null);
}

} // namespace

ChargedList<Layer> listLayers() {
    ChargedList<Layer> layers;
    Layer layer = Layer::null;
    for (;;) {
        callHost(slot::getNextLayer, layer, &layer);
        if (layer == Layer::null) {
            return layers;
        }
        layers.push(layer);
    }
}

LayerRole roleOf(Layer layer) {
    LayerRole role = LayerRole::page;
    if (hostHoldsForms()) {
        callHost(slot::getLayerRole, layer, &role);
    }
    return role;
}

FormFacts formOf(Art group) {
    FormFacts form;
    if (hostHoldsForms()) {
        callHost(slot::getForm, group, &form);
    }
    return form;
}

Art artOf(Layer layer) {
    Art art = Art::null;
    callHost(slot::getLayerArt, layer, &art);
    return art;
}

ContentLayer layerOf(Art group) {
    ContentLayer layer = ContentLayer::null;
    if (hostHoldsForms()) {
        callHost(slot::getGroupLayer, group, &layer);
    }
    return layer;
}

ChargedList<Art> listDrawnArt() {
    ChargedList<Art> groups;
    const ChargedList<Layer> layers = listLayers();
    for (const Layer layer : layers.items()) {
        LayerInfo info;
        callHost(slot::getLayerInfo, layer, &info);
        if (isDrawn(layer, info)) {
            groups.push(artOf(layer));
        }
    }
    return groups;
}

bool leavesOut(Layer layer, const LayerInfo& info) {
    if (isDrawn(layer, info)) {
        return false;
    }
    raiseWarning(Warning::layerLeftOut);
    const auto extension = knownExtension();
    if (extension && extension->layerLeftOut != nullptr) {
        extension->layerLeftOut(extension->context, commentText(info.title));
    }
    return true;
}

} // namespace corvane
