// Which clip of the page is the clip of which group of the artwork.
#pragma once

#include "writer/patch/compare/matching.h"

#include <vector>

namespace corvane {

/// By clip of the page (`ContentTrace::clip`) and by group of the artwork.
struct ClipMatching {
    std::vector<TraceIndex> links;      ///< by group: the clip of the page that it is; 0: a new one
    std::vector<EditedIndex> changedBy; ///< by clip: the group whose clip takes its place; or 0
    std::vector<bool> released;         ///< by clip: none of its objects is clipped any more

    /// The clip that still clips around this one, it included; 0: none.
    TraceIndex unreleased(const ContentTrace& trace, TraceIndex link) const {
        while (link != 0 && released[link]) {
            link = trace.clip(link).outer;
        }
        return link;
    }
};

/// Matches clips by source, or by their points where an editor dropped the source. A clip in which
/// the page paints something that no art shows neither changes nor goes: the groups whose clip
/// was changed have new ones then.
ClipMatching matchClips(const BaseContent& base, const EditedArtwork& artwork,
                        const Matching& matching);

/// Whether an object is clipped in the artwork as the page clips it behind `clip`. Rectangles that
/// cut nothing of the object do not count, nor do clips that no art shows. Clips deeper than
/// `budget::comparedClips` are taken to be the same.
bool isClippedAlike(const BaseContent& base, const EditedArtwork& artwork,
                    const ClipMatching& clips, TraceIndex clip, const EditedObject& object);

} // namespace corvane
