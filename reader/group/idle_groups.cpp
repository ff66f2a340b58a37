#include "reader/group/idle_groups.h"

#include "reader/content/art.h"
#include "reader/group/art_place.h"
#include "runtime/callbacks.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

void replaceByContent(Art group) {
    for (Art art = firstChild(group); art != Art::null;) {
        const Art next = nextSibling(art);
        callHost(slot::reorderArt, art, Placement::inFront, group);
        art = next;
    }
    callHost(slot::disposeArt, group);
}

/// Whether nothing or one thing is left in it, which then stands in its place.
bool dissolves(Art group) {
    const Art child = firstChild(group);
    if (child != Art::null && nextSibling(child) != Art::null) {
        return false;
    }
    replaceByContent(group);
    return true;
}

} // namespace

void IdleGroups::forget(Art art) {
    // Most are gone soon after they were noted.
    const auto at = std::find_if(noted_.rbegin(), noted_.rend(),
                                 [&](const Noted& each) { return each.art == art; });
    if (at != noted_.rend()) {
        noted_.erase(std::next(at).base());
    }
}

void IdleGroups::forget(std::vector<Art> all) {
    std::ranges::sort(all);
    std::erase_if(noted_,
                  [&](const Noted& each) { return std::ranges::binary_search(all, each.art); });
}

void IdleGroups::dissolve(Art layer) {
    std::vector<Art> plain;
    std::vector<Art> holders{layer};
    for (const Noted& each : std::exchange(noted_, {})) {
        if (!each.isPlain) {
            holders.push_back(each.art);
        } else if (!dissolves(each.art)) {
            plain.push_back(each.art);
        }
    }
    std::ranges::sort(plain);
    for (const Art holder : holders) {
        const Art sole = firstContent(holder);
        if (sole != Art::null && nextSibling(sole) == Art::null &&
            std::ranges::binary_search(plain, sole)) {
            replaceByContent(sole);
        }
    }
}

} // namespace corvane
