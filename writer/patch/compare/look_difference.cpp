#include "writer/patch/compare/look_difference.h"

#include "reader/content/appearance.h"
#include "reader/content/losses.h"
#include "runtime/callbacks.h"
#include "writer/patch/compare/group_comparison.h"
#include "writer/patch/patch_tools.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace corvane {

namespace {

MaskFacts factsOf(SoftMask mask) {
    MaskFacts facts;
    callHost(slot::getMask, mask, &facts);
    return facts;
}

/// The value of a transfer at a place from 0 to 1.
double transferred(std::span<const double> transfer, double at) {
    const double step = at * static_cast<double>(transfer.size() - 1);
    const auto index = std::min(static_cast<std::size_t>(step), transfer.size() - 2);
    const double part = step - static_cast<double>(index);
    return transfer[index] * (1 - part) + transfer[index + 1] * part;
}

/// A transfer that is a line may be said by its ends alone.
bool sameTransfer(std::span<const double> was, std::span<const double> is) {
    if (was.size() < 2 || is.size() < 2) {
        return std::ranges::equal(was, is);
    }
    const std::size_t steps = std::max(was.size(), is.size()) - 1;
    for (std::size_t i = 0; i <= steps; ++i) {
        const double at = static_cast<double>(i) / static_cast<double>(steps);
        if (!sameOpacity(transferred(was, at), transferred(is, at))) {
            return false;
        }
    }
    return true;
}

bool isSameKind(const MaskFacts& was, const MaskFacts& is) {
    return was.isLuminosity == is.isLuminosity && sameOpacity(was.backdrop, is.backdrop) &&
           sameTransfer(was.transfer, is.transfer);
}

} // namespace

MaskComparison::Relation MaskComparison::compare(SoftMask was, SoftMask is,
                                                 const std::optional<RealMatrix>& movement) {
    if (was == SoftMask::null || is == SoftMask::null) {
        return was == is ? Relation::same : Relation::other;
    }
    return isSame(was, is, {})                      ? Relation::same
           : movement && isSame(was, is, *movement) ? Relation::moved
                                                    : Relation::other;
}

bool MaskComparison::isSame(SoftMask was, SoftMask is, const RealMatrix& movement) {
    const auto [known, isNew] = known_.try_emplace({was, is, movementKey(movement)}, false);
    if (isNew) {
        const MaskFacts former = factsOf(was);
        const MaskFacts facts = factsOf(is);
        known->second = isSameKind(former, facts) &&
                        isSameGroup(former.content, facts.content, paints_, movement);
    }
    return known->second;
}

void compareLooks(const ObjectLook& was, const ObjectLook& is, MaskComparison& masks,
                  const std::optional<RealMatrix>& movement, ArtDifference& difference) {
    const Appearance& a = was.appearance;
    const Appearance& b = is.appearance;
    LookState& look = difference.look;
    look = {};
    const double fill = b.opacity * b.fillOpacity;
    const double stroke = b.opacity * b.strokeOpacity;
    if (is.fills && !sameOpacity(was.fills ? a.opacity * a.fillOpacity : 1, fill)) {
        look.fillOpacity = fill;
    }
    if (is.strokes && !sameOpacity(was.strokes ? a.opacity * a.strokeOpacity : 1, stroke)) {
        look.strokeOpacity = stroke;
    }
    if (a.blend != b.blend) {
        look.blend = b.blend;
    }
    // Editors drop what they do not know: no word of it is no change.
    if (b.overprint != Overprint() && a.overprint != b.overprint) {
        look.overprint = b.overprint;
    }
    if (b.intent != RenderingIntent::relativeColorimetric && a.intent != b.intent) {
        look.intent = b.intent;
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
