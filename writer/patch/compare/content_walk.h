// What the artwork draws beside art that is no content of the page.
#pragma once

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/layers.h"

#include <unordered_set>
#include <vector>

namespace corvane {

/// Walks all that is drawn but for `others`; calls `visit` for art that is no group, and `holder`
/// for a group that holds others and nothing else.
template <class Visit, class Holder>
void walkContent(const std::unordered_set<Art>& others, const Visit& visit, const Holder& holder) {
    struct Open {
        Art group = Art::null;
        bool holdsOthers = false;
        bool holdsContent = false;
    };
    ChargedList<Art> layers = listDrawnArt();
    while (!layers.empty()) {
        std::vector<Open> open = {{}};
        ArtStack pending;
        pending.push(layers.pop());
        for (ArtStep step; pending.next(step);) {
            if (step.what != ArtStep::What::art) {
                const Open left = open.back();
                open.pop_back();
                open.back().holdsOthers = open.back().holdsOthers || left.holdsOthers;
                open.back().holdsContent = open.back().holdsContent || left.holdsContent;
                if (left.holdsOthers && !left.holdsContent) {
                    holder(left.group);
                }
                continue;
            }
            if (others.contains(step.art)) {
                open.back().holdsOthers = true;
                continue;
            }
            if (artKind(step.art) != ArtKind::group) {
                open.back().holdsContent = true;
                visit(step.art);
                continue;
            }
            std::uint8_t clipped = 0;
            callHost(slot::getGroupClipped, step.art, &clipped);
            const Art first = firstChild(step.art);
            open.push_back({.group = step.art});
            pending.enter(clipped != 0 && first != Art::null ? nextSibling(first) : first,
                          ArtStep::What::end);
        }
    }
}

} // namespace corvane
