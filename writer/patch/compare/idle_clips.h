// Clips that cut nothing, which markup does not draw.
#pragma once

#include "writer/patch/art_extent.h"
#include "writer/patch/compare/group_comparison.h"

namespace corvane {

/// The list without the rectangles that leave all of what they clip, as far as that is `visible`,
/// and without groups that do nothing else. How far letters reach is not known; a clip around them
/// bounds them.
ChargedList<SeenPart> withoutIdleClips(const ChargedList<SeenPart>& parts,
                                       const ArtExtent& visible);

} // namespace corvane
