#include "app/svg/read/layer_reader.h"

#include "app/svg/structure_attributes.h"

#include <string>
#include <utility>

namespace corvane {

Art LayerReader::add(LayerProperties properties) {
    Layer layer = document_.firstLayer();
    if (added_) {
        layer = document_.addLayer(std::move(properties));
    } else {
        document_.setLayerProperties(layer, std::move(properties));
    }
    added_ = true;
    loose_ = Art::null;
    return document_.layerArt(layer);
}

Art LayerReader::loose() {
    if (loose_ == Art::null) {
        loose_ = add({});
    }
    return loose_;
}

bool isLocked(const Attributes& attributes) {
    const std::string_view insensitive = attributes[Attribute::sodipodiInsensitive];
    return attributes.isTrue(Attribute::dataLocked) || insensitive == "true" || insensitive == "1";
}

bool isOfAnnotations(const Attributes& attributes) {
    return attributes.has(Attribute::dataAnnotations) || attributes[Attribute::id] == annotationsId;
}

LayerProperties layerProperties(const Attributes& attributes, bool visible, bool isOurs) {
    LayerProperties layer;
    layer.title = attributes[Attribute::inkscapeLabel];
    layer.visible = visible;
    layer.preview = attributes[Attribute::dataPreview] != "false";
    layer.locked = isLocked(attributes);
    layer.printing = attributes[Attribute::dataPrinting] != "false";
    layer.dimmed = attributes.isTrue(Attribute::dataDimmed);
    layer.role = isOurs && isOfAnnotations(attributes) ? LayerRole::annotations : LayerRole::page;
    return layer;
}

} // namespace corvane
