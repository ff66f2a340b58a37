// What makes a group of SVG a layer, as editors know layers.
#pragma once

#include "app/artwork/layers.h"
#include "app/svg/sink.h"

namespace corvane {

/// Writes the attributes of a layer's element but for its id; only what differs from a new layer.
void writeLayerAttributes(TextOutput&, const LayerProperties&);

} // namespace corvane
