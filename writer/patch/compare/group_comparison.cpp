#include "writer/patch/compare/group_comparison.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/drawn_looks.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace corvane {

namespace {

/// Points by which two movements may differ anywhere on a page.
constexpr double movementRoom = 0.1;

bool isNear(const RealMatrix& a, const RealMatrix& b) {
    constexpr double page = 600;
    constexpr std::array<RealPoint, 3> corners = {{{0, 0}, {page, 0}, {0, page}}};
    return std::ranges::all_of(corners, [&](RealPoint corner) {
        const RealPoint ofA = transform(a, corner);
        const RealPoint ofB = transform(b, corner);
        return std::hypot(ofA.x - ofB.x, ofA.y - ofB.y) <= movementRoom;
    });
}

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
/// is in it. Compound paths are whole.
ChargedList<SeenPart> seenIn(Art group) {
    ChargedList<SeenPart> parts;
    struct Open {
        bool isListed = false;
        Art clip = Art::null;
    };
    std::vector<Open> open = {{}};
    ArtStack pending;
    pending.push(group);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            open.pop_back();
            continue;
        }
        SeenPart part{
            .art = step.art, .kind = artKind(step.art), .isClip = step.art == open.back().clip};
        part.depth = static_cast<std::size_t>(std::ranges::count(open, true, &Open::isListed));
        if (hostHoldsAppearance()) {
            part.appearance = appearanceOf(step.art);
            // Markup says these only where they are seen.
            part.appearance.isIsolated = part.appearance.isKnockout = false;
        }
        if (part.kind == ArtKind::group) {
            std::uint8_t clipped = 0;
            callHost(slot::getGroupClipped, step.art, &clipped);
            part.isClipped = clipped != 0;
            open.push_back({.isListed = part.isClipped || part.appearance != Appearance(),
                            .clip = part.isClipped ? firstChild(step.art) : Art::null});
            pending.enter(firstChild(step.art), ArtStep::What::end);
            if (!open.back().isListed) {
                continue;
            }
        }
        parts.push(part);
    }
    return parts;
}

/// But for what masks hold, which is art of their own.
bool isLaidAlike(const Appearance& was, const Appearance& is) {
    return sameOpacity(was.opacity, is.opacity) && sameOpacity(was.fillOpacity, is.fillOpacity) &&
           sameOpacity(was.strokeOpacity, is.strokeOpacity) && was.blend == is.blend &&
           (was.mask == SoftMask::null) == (is.mask == SoftMask::null);
}

bool isSamePath(Art was, Art is, const RealMatrix& movement, PaintComparison& paints) {
    ArtDifference difference = compareArt(was, is, paints);
    if (movement == RealMatrix()) {
        return !difference.any();
    }
    difference.shape = difference.lineWidth = difference.dash = false;
    const std::optional<RealMatrix> found = movementOf(was, is);
    return !difference.any() && found && isNear(*found, movement);
}

bool isSame(const SeenPart& was, const SeenPart& is, const RealMatrix& movement,
            PaintComparison& paints) {
    if (was.kind != is.kind || was.isClip != is.isClip || was.isClipped != is.isClipped ||
        was.depth != is.depth || !isLaidAlike(was.appearance, is.appearance)) {
        return false;
    }
    switch (was.kind) {
    case ArtKind::path:
    case ArtKind::compound:
        if (was.isClip && movement == RealMatrix()) {
            return sameClip(was.art, is.art);
        }
        return isSamePath(was.art, is.art, movement, paints);
    case ArtKind::text:
        return sameText(was.art, is.art, paints, movement);
    case ArtKind::placed:
        return movement == RealMatrix() ? !compareImages(was.art, is.art).any()
                                        : !compareImages(was.art, is.art).image &&
                                              isNear(movementOfImage(was.art, is.art), movement);
    default:
        return true;
    }
}

} // namespace

bool isSameGroup(Art was, Art is, PaintComparison& paints, const RealMatrix& movement) {
    const ChargedList<SeenPart> former = seenIn(was);
    const ChargedList<SeenPart> parts = seenIn(is);
    return std::ranges::equal(
        former.items(), parts.items(),
        [&](const SeenPart& a, const SeenPart& b) { return isSame(a, b, movement, paints); });
}

} // namespace corvane
