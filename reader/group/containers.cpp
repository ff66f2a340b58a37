#include "reader/group/containers.h"

#include "reader/content/art.h"
#include "reader/group/art_place.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace corvane {

namespace {

/// Tokens that a group or clip counts as which goes on behind marked content, and those that it
/// takes to copy a clip, beside one for each segment.
constexpr std::int64_t entryTokens = 50;
constexpr std::int64_t copyTokens = 300;

/// Of a path, or of what a clip of several paths holds.
std::int64_t segmentsOf(Art art) {
    if (artKind(art) == ArtKind::path) {
        std::int32_t count = 0;
        callHost(slot::getPathSegmentCount, art, &count);
        return count;
    }
    std::int64_t count = 0;
    for (Art child = firstChild(art); child != Art::null; child = nextSibling(child)) {
        count += copyTokens + segmentsOf(child);
    }
    return count;
}

} // namespace

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
        if (entry.mark != 0) {
            left = closeMark(entry.group);
        } else if (entry.group != Art::null) {
            left = closeGroup(entry.group);
        } else {
            closeClip(entry.container);
            left = Art::null;
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
    marks_.clear();
    layered_ = 0;
    while (entries_.size() > 1) {
        const Entry entry = entries_.back();
        entries_.pop_back();
        if (entry.mark != 0) {
            closeMark(entry.group);
        } else {
            closeClip(entry.container);
        }
    }
    if (rules().lazyGroups) {
        idle_.dissolve(layer());
    }
}

/// A clipped group that holds nothing but its clip shows nothing.
void Containers::closeClip(Art group) {
    if (!rules().lazyGroups) {
        return;
    }
    if (nextSibling(firstChild(group)) == Art::null) {
        callHost(slot::disposeArt, group);
    } else {
        idle_.noteHolder(group);
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
        idle_.note(group);
        return group;
    }
    callHost(slot::reorderArt, child, Placement::inFront, group);
    callHost(slot::disposeArt, group);
    return child;
}

/// The group of marked content stays if it holds something.
Art Containers::closeMark(Art group) {
    if (firstChild(group) != Art::null) {
        idle_.noteHolder(group);
        return group;
    }
    callHost(slot::disposeArt, group);
    return Art::null;
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
    if (layered_ != 0) {
        makeMarks();
    }
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

Art Containers::clippedGroup() const {
    const auto entry = std::find_if(entries_.rbegin(), entries_.rend() - 1,
                                    [](const Entry& each) { return each.group == Art::null; });
    return entry == entries_.rend() - 1 ? Art::null : entry->container;
}

Art Containers::clip() const {
    const Art group = clippedGroup();
    return group == Art::null ? Art::null : firstChild(group);
}

Art Containers::make(ArtKind kind) {
    return makeArt(kind, container());
}

std::size_t Containers::marksMade() const {
    const auto made = std::find_if(entries_.rbegin(), entries_.rend(),
                                   [](const Entry& entry) { return entry.mark != 0; });
    return made == entries_.rend() ? 0 : made->mark;
}

/// Makes the groups of the marked content that is open and has none: it was not drawn in yet, or a
/// `Q` closed the former one.
void Containers::makeMarks() {
    for (std::size_t mark = marksMade(); mark < layered_; ++mark) {
        const Mark& open = marks_[mark];
        if (open.layer == ContentLayer::null) {
            continue;
        }
        if (nesting() + soleHeight() >= budget::groupNesting) {
            return;
        }
        if (const std::int32_t level = std::exchange(soleDepth_, -1); level >= 0) {
            wrap(level, sole_);
        }
        const Art group = markGroup(open.layer);
        const std::int32_t depth = std::max(std::min(open.depth, depth_), entries_.back().depth);
        entries_.push_back({.depth = depth, .group = group, .container = group, .mark = mark + 1});
    }
}

/// The group in front goes on where it is of the same layer and nothing was drawn since.
Art Containers::markGroup(ContentLayer layer) {
    const Art container = entries_.back().container;
    if (formerMark_ != Art::null && formerLayer_ == layer) {
        const auto [placement, reference] = placeIn(container);
        const Art front =
            placement == Placement::inside ? firstChild(container) : nextSibling(reference);
        if (front == formerMark_) {
            return front;
        }
    }
    const Art group = makeArt(ArtKind::group, container);
    callHost(slot::setGroupLayer, group, layer);
    return group;
}

void Containers::beginMark(ContentLayer layer) {
    const bool isFull = marks_.size() >= static_cast<std::size_t>(budget::contentLayers);
    if (!marks_.empty() && (isFull || marks_.back().layer == layer)) {
        ++marks_.back().times; // a layer within itself is one
        return;
    }
    marks_.push_back({layer, depth_});
    if (layer != ContentLayer::null) {
        layered_ = marks_.size();
    }
}

std::int64_t Containers::endMark() {
    if (marks_.empty() || --marks_.back().times > 0) {
        return 0;
    }
    const std::size_t mark = marks_.size();
    const ContentLayer layer = marks_.back().layer;
    marks_.pop_back();
    if (layer == ContentLayer::null) {
        return 0;
    }
    for (layered_ = marks_.size();
         layered_ > 0 && marks_[layered_ - 1].layer == ContentLayer::null;) {
        --layered_;
    }
    const std::int64_t work = leaveMark(mark);
    formerLayer_ = layer;
    return work;
}

/// How many of the last entries, each within the one before, hold nothing but clips and the next.
std::ptrdiff_t Containers::bareAtEnd(const std::vector<Entry>& entries) {
    std::ptrdiff_t count = 0;
    Art inner = Art::null;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry, ++count) {
        Art child = firstChild(entry->container);
        if (entry->group == Art::null && child != Art::null) {
            child = nextSibling(child); // behind the clip
        }
        if (child != inner || (inner != Art::null && nextSibling(inner) != Art::null)) {
            break;
        }
        inner = entry->container;
    }
    return count;
}

/// What is drawn from here on is no longer in the group of that mark. Clips and groups that began
/// within it and go on are opened again in front of it, or moved there where they are still empty.
std::int64_t Containers::leaveMark(std::size_t mark) {
    formerMark_ = Art::null;
    const auto at = std::ranges::find(entries_, mark, &Entry::mark);
    if (at == entries_.end()) {
        return 0;
    }
    const std::vector<Entry> within(at + 1, entries_.end());
    const Entry own = *at;
    entries_.erase(at, entries_.end());
    entries_.back().height = std::max(entries_.back().height, own.height + 1);
    const auto bare = within.end() - bareAtEnd(within);
    std::int64_t work = entryTokens * std::ssize(within);
    for (auto entry = within.begin(); entry != bare; ++entry) {
        if (entry->group == Art::null) {
            idle_.noteHolder(entry->container);
            work += reopenClip(*entry);
        }
    }
    if (bare != within.end()) {
        const GroupPlace place = placeIn(entries_.back().container);
        callHost(slot::reorderArt, bare->container, place.placement, place.reference);
        entries_.insert(entries_.end(), bare, within.end());
    }
    for (auto entry = std::reverse_iterator(bare); entry != within.rend(); ++entry) {
        if (entry->group != Art::null) {
            closeGroup(entry->group);
        }
    }
    soleDepth_ = -1;
    const Art left = closeMark(own.group);
    formerMark_ = left;
    if (within.empty() && left != Art::null && !isMade()) {
        soleDepth_ = depth_;
        sole_ = left;
        soleHeight_ = own.height + 1;
    }
    return work;
}

/// A clip in force, around what comes: a group of its own with a copy of the clip. The work of it.
std::int64_t Containers::reopenClip(const Entry& entry) {
    checkNesting();
    Art clip = Art::null;
    const Art group = makeArt(ArtKind::group, entries_.back().container);
    const Art former = firstChild(entry.container);
    if (former == Art::null) {
        callHost(slot::disposeArt, group);
        return 0;
    }
    callHost(slot::duplicateArt, former, Placement::inside, group, &clip);
    callHost(slot::setGroupClipped, group, std::uint8_t{1});
    entries_.push_back({.depth = entry.depth, .container = group});
    return copyTokens + segmentsOf(clip);
}

void Containers::bringAlong(Art art, Art holder) {
    if (isOpen(holder)) {
        return;
    }
    const GroupPlace place = placeIn(container());
    callHost(slot::reorderArt, art, place.placement, place.reference);
    if (holder != Art::null && firstContent(holder) == Art::null) {
        callHost(slot::disposeArt, holder);
        idle_.forget(holder);
        formerMark_ = holder == formerMark_ ? Art::null : formerMark_;
    }
}

bool Containers::isOpen(Art container) const {
    return std::any_of(entries_.rbegin(), entries_.rend(),
                       [&](const Entry& entry) { return entry.container == container; });
}

void Containers::dropBare() {
    std::vector<Art> groups{layer()};
    for (std::size_t at = 0; at < groups.size(); ++at) {
        for (Art art = firstChild(groups[at]); art != Art::null; art = nextSibling(art)) {
            if (artKind(art) == ArtKind::group) {
                groups.push_back(art);
            }
        }
    }
    std::vector<Art> dropped;
    // Inner ones first, but for the layer's.
    for (; groups.size() > 1; groups.pop_back()) {
        const Art group = groups.back();
        if (isOpen(group) || firstContent(group) != Art::null) {
            continue;
        }
        callHost(slot::disposeArt, group);
        dropped.push_back(group);
        soleDepth_ = group == sole_ ? -1 : soleDepth_;
        formerMark_ = group == formerMark_ ? Art::null : formerMark_;
    }
    idle_.forget(std::move(dropped));
}

bool Containers::isFull() const {
    return nesting() >= budget::artNesting - 8;
}

void Containers::checkNesting() const {
    if (isFull()) {
        failException(Exception::structure);
    }
}

void Containers::enter(Art group) {
    checkNesting();
    entries_.push_back({.depth = depth_, .container = group});
}

} // namespace corvane
