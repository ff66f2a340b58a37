// How far a shape's paint reaches, and what a shape cuts as a clip.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/extent.h"

namespace corvane {

/// A rectangle around everything that a path or compound path paints: stroke width, caps and miters
/// included, curves by their control points. Never too small.
Extent paintedExtent(const Document&, Art shape);

/// A path or compound path as a clip; or text, of which nothing is known.
struct ClipShape {
    Extent bounds;          ///< of all points, so at least as large as the clip
    bool rectangle = false; ///< it is exactly `bounds`
    bool blank = true;      ///< it has no area: nothing is seen through it
};

ClipShape clipShape(const Document&, Art shape);

} // namespace corvane
