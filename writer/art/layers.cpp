#include "writer/art/layers.h"

#include "reader/form/form_drawing.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "writer/art/style_works.h"

namespace corvane {

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

bool isDrawn(const LayerInfo& info) {
    return !rules().hiddenLayersLeftOut || (info.visible != 0 && info.printing != 0);
}

bool leavesOut(const LayerInfo& info) {
    if (isDrawn(info)) {
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
