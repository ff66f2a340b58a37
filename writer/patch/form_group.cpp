#include "writer/patch/form_group.h"

#include "writer/patch/group_parts.h"
#include "writer/patch/placed_image.h"
#include "writer/patch/text/text_run.h"

#include <algorithm>

namespace corvane {

namespace {

bool isSame(const GroupPart& was, const GroupPart& is) {
    if (was != is) {
        return false;
    }
    switch (was.kind) {
    case ArtKind::path:
    case ArtKind::compound:
        return !compareArt(was.art, is.art).any();
    case ArtKind::text:
        return sameText(was.art, is.art);
    case ArtKind::placed:
        return !compareImages(was.art, is.art).any();
    default:
        return true;
    }
}

} // namespace

ArtDifference compareForms(Art was, Art is) {
    const ChargedList<GroupPart> former = partsOf(was);
    const ChargedList<GroupPart> parts = partsOf(is);
    return {.letters = !std::ranges::equal(former.items(), parts.items(), isSame)};
}

} // namespace corvane
