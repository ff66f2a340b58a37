// The layers of the host's document, as they are written.
#pragma once

#include "host/artwork.h"
#include "host/structure.h"
#include "runtime/charged_list.h"

namespace corvane {

/// All layers, from the front to the back.
ChargedList<Layer> listLayers();

/// The group that holds all art of a layer.
Art artOf(Layer layer);

/// What the layer stands for; a part of the page where the host knows no roles.
LayerRole roleOf(Layer layer);

/// What the group stands for; its defaults where the host knows no forms.
FormFacts formOf(Art group);

/// The layer of the file, or new in it, with which the group shows; null where there is none.
ContentLayer layerOf(Art group);

/// The groups of all layers that are drawn on the page, from the front to the back.
ChargedList<Art> listDrawnArt();

/// Whether a layer is not drawn on the page: it is hidden and no layer of the file, or does not
/// print. If so, the person is warned and the host learns its title.
bool leavesOut(Layer layer, const LayerInfo& info);

} // namespace corvane
