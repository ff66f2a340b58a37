#include "writer/patch/compare/form_group.h"

#include "reader/content/appearance.h"
#include "writer/art/drawn_looks.h"
#include "writer/patch/compare/group_parts.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>

namespace corvane {

namespace {

/// But for masks, which are art of their own.
bool isLaidAlike(Art was, Art is) {
    if (!hostHoldsAppearance()) {
        return true;
    }
    Appearance former = appearanceOf(was);
    former.mask = appearanceOf(is).mask;
    return former == appearanceOf(is);
}

bool isSame(const GroupPart& was, const GroupPart& is, PaintComparison& paints) {
    if (was != is || !isLaidAlike(was.art, is.art)) {
        return false;
    }
    switch (was.kind) {
    case ArtKind::path:
    case ArtKind::compound:
        return !compareArt(was.art, is.art, paints).any();
    case ArtKind::text:
        return sameText(was.art, is.art, paints);
    case ArtKind::placed:
        return !compareImages(was.art, is.art).any();
    default:
        return true;
    }
}

} // namespace

bool isSameGroup(Art was, Art is, PaintComparison& paints) {
    const ChargedList<GroupPart> former = partsOf(was);
    const ChargedList<GroupPart> parts = partsOf(is);
    return std::ranges::equal(
        former.items(), parts.items(),
        [&](const GroupPart& a, const GroupPart& b) { return isSame(a, b, paints); });
}

} // namespace corvane
