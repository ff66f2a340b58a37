#include "reader/group/idle_groups.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// The clip of a clipped group is no content of it.
Art firstContent(Art holder) {
    std::uint8_t clipped = 0;
    callHost(slot::getGroupClipped, holder, &clipped);
    const Art first = firstChild(holder);
    return clipped != 0 && first != Art::null ? nextSibling(first) : first;
}

void replaceByContent(Art group) {
    for (Art art = firstChild(group); art != Art::null;) {
        const Art next = nextSibling(art);
        callHost(slot::reorderArt, art, Placement::inFront, group);
        art = next;
    }
    callHost(slot::disposeArt, group);
}

void erase(std::vector<Art>& from, Art art) {
    // Most are gone soon after they were noted.
    const auto at = std::find(from.rbegin(), from.rend(), art);
    if (at != from.rend()) {
        from.erase(std::next(at).base());
    }
}

} // namespace

void IdleGroups::forget(Art art) {
    erase(groups_, art);
    erase(holders_, art);
}

void IdleGroups::forget(std::vector<Art> all) {
    std::ranges::sort(all);
    const auto isOf = [&](Art art) { return std::ranges::binary_search(all, art); };
    std::erase_if(groups_, isOf);
    std::erase_if(holders_, isOf);
}

void IdleGroups::dissolve(Art layer) {
    std::erase_if(groups_, [](Art group) {
        const Art child = firstChild(group);
        if (child != Art::null && nextSibling(child) != Art::null) {
            return false;
        }
        replaceByContent(group);
        return true;
    });
    std::ranges::sort(groups_);
    holders_.push_back(layer);
    for (const Art holder : std::exchange(holders_, {})) {
        dissolveSole(holder);
    }
    groups_.clear();
}

void IdleGroups::dissolveSole(Art holder) {
    const Art sole = firstContent(holder);
    if (sole != Art::null && nextSibling(sole) == Art::null &&
        std::ranges::binary_search(groups_, sole)) {
        replaceByContent(sole);
    }
}

} // namespace corvane
