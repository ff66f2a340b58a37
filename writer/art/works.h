// The art walk: the host's artwork as the text of one page's content, from the back to the front.
#pragma once

#include "objects/stack.h"
#include "reader/document/cache.h"
#include "writer/art/paint_drawing.h"
#include "writer/art/text/text_drawing.h"

#include <cstdint>
#include <unordered_set>

namespace corvane {

class ContentImages;
class DrawnLooks;
class LayerMarks;

/// What draws other things than paths; null: nothing does.
struct Drawings {
    TextDrawing* texts = nullptr;
    ContentImages* images = nullptr;
    PaintDrawing* paints = nullptr;
    DrawnLooks* looks = nullptr;  ///< null: all art is opaque
    LayerMarks* layers = nullptr; ///< null: all art shows always
    const std::unordered_set<Art>* others =
        nullptr; ///< art that is no content; null: there is none
};

/// Writes the content to the cache's output; its length in bytes. `placement` leads from the
/// artboard to the page's own space and is written first, unless it changes nothing. Raises `host`
/// where a slot fails, `cancelled` where the person wants to stop, `type` for art, paint, caps and
/// joins of an unknown kind. Without `texts`, text raises `unpatchable`; so do images without
/// `images`; without `paints` the host draws gradients and patterns of fills.
std::int32_t documentWorks(DocumentCache& cache, const RealMatrix& placement,
                           const Drawings& drawings = {});

} // namespace corvane
