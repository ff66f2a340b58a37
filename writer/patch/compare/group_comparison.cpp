#include "writer/patch/compare/group_comparison.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/drawn_looks.h"
#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/idle_clips.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
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

} // namespace

namespace {

/// Markup has no groups that hold nothing, or nothing but a clip.
ChargedList<SeenPart> withoutEmptyGroups(const ChargedList<SeenPart>& parts) {
    std::vector<bool> isSeen(parts.size());
    std::vector<std::size_t> open; // groups around the part at hand
    for (std::size_t i = 0; i < parts.size(); ++i) {
        while (!open.empty() && parts[open.back()].depth >= parts[i].depth) {
            open.pop_back();
        }
        if (parts[i].kind == ArtKind::group) {
            open.push_back(i);
        } else if (!parts[i].isClip) {
            isSeen[i] = true;
            for (auto group = open.rbegin(); group != open.rend() && !isSeen[*group]; ++group) {
                isSeen[*group] = true;
            }
        } else {
            isSeen[i] = true;
        }
    }
    ChargedList<SeenPart> seen;
    std::size_t skipped = SIZE_MAX; // depth of the empty group around the part at hand
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].depth > skipped) {
            continue;
        }
        skipped = isSeen[i] ? SIZE_MAX : parts[i].depth;
        if (isSeen[i]) {
            seen.push(parts[i]);
        }
    }
    return seen;
}

/// Markup has the look of a group on the one thing in it, or the other way round.
ChargedList<SeenPart> withoutLoneGroups(const ChargedList<SeenPart>& parts) {
    ChargedList<SeenPart> folded;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        SeenPart part = parts[i];
        const bool isLone = part.kind == ArtKind::group && !part.isClipped &&
                            i + 1 < parts.size() && parts[i + 1].depth == part.depth + 1 &&
                            parts[i + 1].kind != ArtKind::group &&
                            (i + 2 == parts.size() || parts[i + 2].depth <= part.depth) &&
                            (part.appearance.mask == SoftMask::null ||
                             parts[i + 1].appearance.mask == SoftMask::null);
        if (isLone) {
            const Appearance around = part.appearance;
            part = parts[++i];
            --part.depth;
            part.appearance = together(around, part.appearance);
        }
        folded.push(part);
    }
    return folded;
}

} // namespace

ChargedList<SeenPart> seenIn(Art group, const ArtExtent& visible) {
    ChargedList<SeenPart> parts;
    struct Open {
        bool isListed = false;
        Art clip = Art::null;
    };
    std::vector<Open> open = {{}};
    std::size_t depth = 0; // in those that are listed
    ArtStack pending;
    pending.push(group);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            depth -= open.back().isListed ? 1 : 0;
            open.pop_back();
            continue;
        }
        SeenPart part{.art = step.art,
                      .kind = artKind(step.art),
                      .isClip = step.art == open.back().clip,
                      .depth = depth};
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
            ++depth;
        }
        parts.push(part);
    }
    return withoutLoneGroups(withoutIdleClips(withoutEmptyGroups(parts), visible));
}

namespace {

/// But for what masks hold, which is art of their own.
bool isLaidAlike(const Appearance& was, const Appearance& is) {
    return sameOpacity(was.opacity, is.opacity) && sameOpacity(was.fillOpacity, is.fillOpacity) &&
           sameOpacity(was.strokeOpacity, is.strokeOpacity) && was.blend == is.blend &&
           (was.mask == SoftMask::null) == (is.mask == SoftMask::null);
}

bool isSamePath(Art was, Art is, const RealMatrix& movement, PaintComparison& paints) {
    ArtDifference difference = compareArt(was, is, paints);
    difference.look = {}; // the part has it, with that of a group that is one with it
    if (movement == RealMatrix()) {
        return !difference.any();
    }
    difference.shape = difference.lineWidth = difference.dash = difference.pen = false;
    const std::optional<RealMatrix> found = movementOf(was, is);
    return !difference.any() && found && isNear(*found, movement);
}

} // namespace

bool isSamePart(const SeenPart& was, const SeenPart& is, PaintComparison& paints,
                const RealMatrix& movement) {
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

bool isSameGroup(Art was, Art is, PaintComparison& paints, const RealMatrix& movement) {
    return isSameArt(seenIn(was), seenIn(is), paints, movement);
}

bool isSameArt(const ChargedList<SeenPart>& was, const ChargedList<SeenPart>& is,
               PaintComparison& paints, const RealMatrix& movement) {
    return std::ranges::equal(was.items(), is.items(), [&](const SeenPart& a, const SeenPart& b) {
        return isSamePart(a, b, paints, movement);
    });
}

} // namespace corvane
