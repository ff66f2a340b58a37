#include "writer/patch/text/glyph_group.h"

#include "writer/patch/compare/group_parts.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <utility>

namespace corvane {

bool isGlyphGroup(Art art) {
    const ChargedList<GroupPart> parts = partsOf(art);
    return std::ranges::all_of(parts.items(), [](const GroupPart& part) {
        return part.kind == ArtKind::group || part.kind == ArtKind::path ||
               part.kind == ArtKind::compound || part.kind == ArtKind::placed;
    });
}

ArtDifference compareGlyphs(Art was, Art is, PaintComparison& paints) {
    const ChargedList<GroupPart> ofWas = partsOf(was);
    const ChargedList<GroupPart> ofIs = partsOf(is);
    ArtDifference difference;
    difference.letters = !std::ranges::equal(ofWas.items(), ofIs.items());
    bool isMoved = false;
    for (std::size_t i = 0; !difference.letters && i < ofWas.size(); ++i) {
        if (ofWas[i].kind == ArtKind::group) {
            continue;
        }
        const bool isImage = ofWas[i].kind == ArtKind::placed;
        ArtDifference part = isImage ? compareImages(ofWas[i].art, ofIs[i].art)
                                     : compareArt(ofWas[i].art, ofIs[i].art, paints);
        difference.movesPaint = part.movesPaint || difference.movesPaint;
        isMoved = std::exchange(isImage ? part.place : part.shape, false) || isMoved;
        difference.letters = part.any();
    }
    if (isMoved && !difference.letters) {
        difference.place = movementOf(was, is).has_value();
        difference.letters = !difference.place;
    }
    return difference;
}

} // namespace corvane
