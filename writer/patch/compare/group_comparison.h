// Whether what two groups hold looks the same: of annotations, soft masks and tiles.
#pragma once

#include "host/appearance.h"
#include "host/matrix.h"
#include "runtime/charged_list.h"
#include "writer/patch/art_extent.h"
#include "writer/patch/compare/comparison.h"

#include <cstddef>

namespace corvane {

/// A piece of art in a group, or a group that clips what it holds or lays it over other art.
struct SeenPart {
    Art art = Art::null;
    ArtKind kind = ArtKind::path;
    bool isClip = false; ///< of the group around it
    bool isClipped = false;
    std::size_t depth = 0;      ///< in groups of the list
    Appearance appearance = {}; ///< where the host holds any
};

/// The group itself and what it holds, from the back to the front; a group comes in front of what
/// is in it, and one that only lays one thing over others is one with it. Compound paths are whole.
/// Clips that cut nothing of what is `visible` are no parts.
ChargedList<SeenPart> seenIn(Art group, const ArtExtent& visible = ArtExtent::everything());

bool isSamePart(const SeenPart& was, const SeenPart& is, PaintComparison& paints,
                const RealMatrix& movement = {});

/// Clips, looks and text included; groups that do nothing to what they hold are not seen. The first
/// one is moved so on the artboard.
bool isSameGroup(Art was, Art is, PaintComparison& paints, const RealMatrix& movement = {});

/// The same of two lists.
bool isSameArt(const ChargedList<SeenPart>& was, const ChargedList<SeenPart>& is,
               PaintComparison& paints, const RealMatrix& movement = {});

} // namespace corvane
