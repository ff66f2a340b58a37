#include "writer/patch/compare/look_difference.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/losses.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/outline.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/patch_tools.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

/// Editors write opacities with three digits; half a level of 255 is not seen.
constexpr double opacityRoom = 1.0 / 512;

/// Points by which two movements may differ anywhere on a page.
constexpr double movementRoom = 0.1;

bool isNear(double a, double b) {
    return std::abs(a - b) <= opacityRoom;
}

bool isNear(const RealMatrix& a, const RealMatrix& b) {
    constexpr double page = 600;
    constexpr std::array<RealPoint, 3> corners = {{{0, 0}, {page, 0}, {0, page}}};
    return std::ranges::all_of(corners, [&](RealPoint corner) {
        const RealPoint ofA = transform(a, corner);
        const RealPoint ofB = transform(b, corner);
        return std::hypot(ofA.x - ofB.x, ofA.y - ofB.y) <= movementRoom;
    });
}

/// What is painted in a mask, from the back to the front.
ChargedList<Art> paintedIn(Art content) {
    ChargedList<Art> painted;
    ArtStack pending;
    pending.push(content);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            continue;
        }
        if (artKind(step.art) != ArtKind::group) {
            painted.push(step.art);
            continue;
        }
        std::uint8_t clipped = 0;
        callHost(slot::getGroupClipped, step.art, &clipped);
        const Art first = firstChild(step.art);
        const bool hasClip = clipped != 0 && first != Art::null;
        pending.enter(hasClip ? nextSibling(first) : first, ArtStep::What::end);
    }
    return painted;
}

bool isSame(Art was, Art is, PaintComparison& paints) {
    const ArtKind kind = artKind(was);
    if (kind != artKind(is)) {
        return false;
    }
    return kind == ArtKind::text     ? sameText(was, is, paints)
           : kind == ArtKind::placed ? !compareImages(was, is).any()
                                     : !compareArt(was, is, paints).any();
}

bool isMoved(Art was, Art is, const RealMatrix& movement, PaintComparison& paints) {
    const ArtKind kind = artKind(was);
    if (kind != artKind(is)) {
        return false;
    }
    if (kind == ArtKind::text) {
        return true;
    }
    if (kind == ArtKind::placed) {
        return !compareImages(was, is).image && isNear(movementOfImage(was, is), movement);
    }
    ArtDifference difference = compareArt(was, is, paints);
    difference.shape = difference.lineWidth = difference.dash = false;
    const std::optional<RealMatrix> found = movementOf(was, is);
    return !difference.any() && found && isNear(*found, movement);
}

MaskFacts factsOf(SoftMask mask) {
    MaskFacts facts;
    callHost(slot::getMask, mask, &facts);
    return facts;
}

bool isSameKind(const MaskFacts& was, const MaskFacts& is) {
    // A transfer that is a line may be said by its ends alone.
    const bool sameTransfer =
        was.transfer.empty() == is.transfer.empty() &&
        (was.transfer.empty() || (isNear(was.transfer.front(), is.transfer.front()) &&
                                  isNear(was.transfer.back(), is.transfer.back())));
    return was.isLuminosity == is.isLuminosity && isNear(was.backdrop, is.backdrop) && sameTransfer;
}

} // namespace

MaskComparison::Relation MaskComparison::compare(SoftMask was, SoftMask is,
                                                 const std::optional<RealMatrix>& movement) {
    if (was == SoftMask::null || is == SoftMask::null) {
        return was == is ? Relation::same : Relation::other;
    }
    const MaskFacts former = factsOf(was);
    const MaskFacts facts = factsOf(is);
    if (!isSameKind(former, facts)) {
        return Relation::other;
    }
    const auto [known, isNew] = same_.try_emplace({was, is});
    if (!isNew && known->second) {
        return Relation::same;
    }
    const ChargedList<Art> ofWas = paintedIn(former.content);
    const ChargedList<Art> ofIs = paintedIn(facts.content);
    if (isNew) {
        known->second = std::ranges::equal(ofWas.items(), ofIs.items(),
                                           [&](Art a, Art b) { return isSame(a, b, paints_); });
    }
    const auto isMovedAlong = [&](Art a, Art b) { return isMoved(a, b, *movement, paints_); };
    return known->second ? Relation::same
           : movement && std::ranges::equal(ofWas.items(), ofIs.items(), isMovedAlong)
               ? Relation::moved
               : Relation::other;
}

void compareLooks(const ObjectLook& was, const ObjectLook& is, MaskComparison& masks,
                  const std::optional<RealMatrix>& movement, ArtDifference& difference) {
    const Appearance& a = was.appearance;
    const Appearance& b = is.appearance;
    LookState& look = difference.look;
    look = {};
    const double fill = b.opacity * b.fillOpacity;
    const double stroke = b.opacity * b.strokeOpacity;
    if (is.fills && !isNear(was.fills ? a.opacity * a.fillOpacity : 1, fill)) {
        look.fillOpacity = fill;
    }
    if (is.strokes && !isNear(was.strokes ? a.opacity * a.strokeOpacity : 1, stroke)) {
        look.strokeOpacity = stroke;
    }
    if (a.blend != b.blend) {
        look.blend = b.blend;
    }
    const MaskComparison::Relation relation = masks.compare(a.mask, b.mask, movement);
    difference.masksMoved = relation == MaskComparison::Relation::moved;
    if (relation == MaskComparison::Relation::other) {
        look.mask = b.mask;
    }
}

bool movesMask(const Surroundings& own, const ArtDifference& difference) {
    return (own.settings & softMaskSetting) != 0 &&
           (!hostHoldsAppearance() || difference.masksMoved);
}

void lookWorks(PatchTools& tools, const RealMatrix& ctm, const LookState& look) {
    const std::optional<RealMatrix> back = inverse(ctm);
    const bool isElsewhere = look.mask && *look.mask != SoftMask::null && ctm != RealMatrix();
    // A mask lies where it is set.
    if (isElsewhere && back) {
        tools.walk.text.addMatrix(withoutSignedZeros(*back));
        tools.walk.text.add("cm\n");
    }
    stateWorks(tools.walk, look);
    if (isElsewhere && back) {
        tools.walk.text.addMatrix(ctm);
        tools.walk.text.add("cm\n");
    }
}

} // namespace corvane
