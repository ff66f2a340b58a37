// Marked content of layers, in one content.
#pragma once

#include "writer/art/content_text.h"
#include "writer/layer/saved_layers.h"
#include "writer/page/needed_version.h"
#include "writer/page/resource_registry.h"

namespace corvane {

class LayerMarks {
public:
    LayerMarks(SavedLayers& layers, ResourceRegistry& resources)
        : layers_(&layers), resources_(&resources) {}

    /// What follows, up to `end`, shows where the layer does.
    void begin(ContentText& text, ContentLayer layer) {
        needVersion(Feature::optionalContent);
        const ObjectIdentifier object = layers_->identify(layer);
        text.add("/OC /");
        text.add(resources_->add(ResourceCategory::property, object.number, object.generation));
        text.add(" BDC\n");
    }
    static void end(ContentText& text) { text.add("EMC\n"); }

private:
    SavedLayers* layers_;
    ResourceRegistry* resources_;
};

} // namespace corvane
