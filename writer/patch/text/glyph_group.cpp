#include "writer/patch/text/glyph_group.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/charged_list.h"
#include "writer/art/art_stack.h"
#include "writer/patch/movement.h"
#include "writer/patch/placed_image.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// What a group holds, from the back to the front; a group comes in front of what it holds.
struct Part {
    Art art = Art::null;
    ArtKind kind = ArtKind::path;
    bool isClipped = false;
    std::int32_t depth = 0;
    friend bool operator==(const Part& a, const Part& b) {
        return a.kind == b.kind && a.isClipped == b.isClipped && a.depth == b.depth;
    }
};

ChargedList<Part> partsOf(Art group) {
    ChargedList<Part> parts;
    ArtStack pending;
    pending.push(group);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            continue;
        }
        Part part{.art = step.art, .kind = artKind(step.art), .depth = pending.depth()};
        if (part.kind == ArtKind::group) {
            std::uint8_t clipped = 0;
            callHost(slot::getGroupClipped, step.art, &clipped);
            part.isClipped = clipped != 0;
            pending.enter(firstChild(step.art), ArtStep::What::end);
        }
        parts.push(part);
    }
    return parts;
}

} // namespace

bool isGlyphGroup(Art art) {
    const ChargedList<Part> parts = partsOf(art);
    return std::ranges::all_of(parts.items(), [](const Part& part) {
        return part.kind == ArtKind::group || part.kind == ArtKind::path ||
               part.kind == ArtKind::compound || part.kind == ArtKind::placed;
    });
}

ArtDifference compareGlyphs(Art was, Art is) {
    const ChargedList<Part> ofWas = partsOf(was);
    const ChargedList<Part> ofIs = partsOf(is);
    ArtDifference difference;
    difference.letters = !std::ranges::equal(ofWas.items(), ofIs.items());
    bool isMoved = false;
    for (std::size_t i = 0; !difference.letters && i < ofWas.size(); ++i) {
        if (ofWas[i].kind == ArtKind::group) {
            continue;
        }
        const bool isImage = ofWas[i].kind == ArtKind::placed;
        ArtDifference part = isImage ? compareImages(ofWas[i].art, ofIs[i].art)
                                     : compareArt(ofWas[i].art, ofIs[i].art);
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
