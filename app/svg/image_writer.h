// Placed objects in SVG: the picture, or a frame that stands for it.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/extent.h"
#include "app/svg/path_data.h"
#include "app/svg/sink.h"

namespace corvane {

/// Whether a file shows what the placed object shows. Else a frame with a cross stands for it.
bool showsFile(const Document&, Art placed);

/// Writes the attributes of an `image` but for its id and source: the unit square under the
/// object's matrix.
void writeImageAttributes(TextOutput&, const Document&, Art placed, PageCorner);

/// The same of a `path` that is the frame. Its first subpath has the corners of the unit square: at
/// 0,0, then 1,0, 1,1 and 0,1.
void writeFrameAttributes(TextOutput&, const Document&, Art placed, PageCorner);

/// A rectangle around all that is drawn of a placed object.
Extent placedExtent(const Document&, Art placed);

} // namespace corvane
