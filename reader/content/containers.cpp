#include "reader/content/containers.h"

#include "reader/content/art.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

struct Place {
    Placement placement = Placement::inside;
    Art reference = Art::null;
};

/// Where new art goes in a container: the rule for clipped groups.
Place placeIn(Art container) {
    std::uint8_t clipped = 0;
    callHost(slot::getGroupClipped, container, &clipped);
    if (clipped == 0) {
        return {Placement::inside, container};
    }
    const Art clip = firstChild(container);
    if (clip == Art::null) {
        failException(Exception::host);
    }
    return {Placement::behind, clip};
}

} // namespace

Art makeArt(ArtKind kind, Art container) {
    const Place place = placeIn(container);
    return newArt(kind, place.placement, place.reference);
}

void Containers::open(Art layer, std::int32_t around) {
    *this = Containers();
    around_ = around;
    entries_.push_back({.container = layer});
}

void Containers::push() {
    ++depth_;
    if (!rules().lazyGroups) {
        makeGroup();
    }
}

void Containers::pop() {
    Art left = Art::null;
    std::int32_t height = 0;
    if (soleDepth_ == depth_) {
        left = sole_;
        height = soleHeight_;
        soleDepth_ = -1;
    }
    while (entries_.back().depth == depth_) {
        const Entry entry = entries_.back();
        entries_.pop_back();
        height = std::max(height, entry.height + 1);
        entries_.back().height = std::max(entries_.back().height, height);
        if (entry.group != Art::null) {
            left = closeGroup(entry.group);
        } else {
            closeClip(entry.container);
        }
    }
    --depth_;
    if (left != Art::null && !isMade()) {
        soleDepth_ = depth_;
        sole_ = left;
        soleHeight_ = height;
    }
}

void Containers::abandon() noexcept {
    while (entries_.back().depth == depth_) {
        entries_.pop_back();
    }
    if (soleDepth_ == depth_) {
        soleDepth_ = -1;
    }
    --depth_;
}

void Containers::finish() {
    while (entries_.size() > 1) {
        closeClip(entries_.back().container);
        entries_.pop_back();
    }
}

/// A clipped group that holds nothing but its clip shows nothing.
void Containers::closeClip(Art group) {
    if (rules().lazyGroups && nextSibling(firstChild(group)) == Art::null) {
        callHost(slot::disposeArt, group);
    }
}

/// What is left of a level's group when the level ends: the group, the group that it alone holds,
/// or nothing.
Art Containers::closeGroup(Art group) {
    if (!rules().lazyGroups) {
        return group;
    }
    const Art child = firstChild(group);
    if (child == Art::null) {
        callHost(slot::disposeArt, group);
        return Art::null;
    }
    if (nextSibling(child) != Art::null || artKind(child) != ArtKind::group) {
        return group;
    }
    callHost(slot::reorderArt, child, Placement::inFront, group);
    callHost(slot::disposeArt, group);
    return child;
}

void Containers::makeGroup() {
    const Art group = makeArt(ArtKind::group, entries_.back().container);
    entries_.push_back({.depth = depth_, .group = group, .container = group});
}

/// Makes the group of a level around the one group that stands in it.
void Containers::wrap(std::int32_t depth, Art inner) {
    const Art group = newArt(ArtKind::group, Placement::inFront, inner);
    entries_.push_back({depth, group, group, soleHeight_});
    callHost(slot::reorderArt, inner, Placement::inside, group);
}

Art Containers::container() {
    if (isMade() || nesting() >= budget::groupNesting) {
        return entries_.back().container;
    }
    const std::int32_t level = std::exchange(soleDepth_, -1);
    if (level >= 0) {
        if (nesting() + soleHeight_ >= budget::groupNesting) {
            return entries_.back().container;
        }
        wrap(level, sole_);
    }
    if (level != depth_) {
        makeGroup();
    }
    return entries_.back().container;
}

Art Containers::clip() const {
    const auto entry = std::find_if(entries_.rbegin(), entries_.rend() - 1,
                                    [](const Entry& each) { return each.group == Art::null; });
    return entry == entries_.rend() - 1 ? Art::null : firstChild(entry->container);
}

Art Containers::make(ArtKind kind) {
    return makeArt(kind, container());
}

void Containers::bringAlong(Art art, Art holder) {
    const bool isOpen = std::any_of(entries_.rbegin(), entries_.rend(),
                                    [&](const Entry& entry) { return entry.container == holder; });
    if (!isOpen) {
        const Place place = placeIn(container());
        callHost(slot::reorderArt, art, place.placement, place.reference);
    }
}

void Containers::enter(Art group) {
    if (nesting() >= budget::artNesting - 8) {
        failException(Exception::structure);
    }
    entries_.push_back({.depth = depth_, .container = group});
}

} // namespace corvane
