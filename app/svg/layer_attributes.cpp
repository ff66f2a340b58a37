#include "app/svg/layer_attributes.h"

#include "app/svg/markup.h"

namespace corvane {

void writeLayerAttributes(TextOutput& out, const LayerProperties& layer) {
    writePlainAttribute(out, "inkscape:groupmode", "layer");
    if (!layer.title.empty()) {
        writeAttribute(out, "inkscape:label", layer.title);
    }
    if (!layer.visible) {
        writePlainAttribute(out, "display", "none");
    }
    if (!layer.preview) {
        writePlainAttribute(out, "data-preview", "false");
    }
    if (layer.locked) {
        writePlainAttribute(out, "data-locked", "true");
    }
    if (!layer.printing) {
        writePlainAttribute(out, "data-printing", "false");
    }
    if (layer.dimmed) {
        writePlainAttribute(out, "data-dimmed", "true");
    }
}

} // namespace corvane
