#include "writer/patch/compare/clip_matching.h"

#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "writer/patch/art_extent.h"
#include "writer/patch/path_bytes.h"

#include <algorithm>
#include <optional>
#include <span>

namespace corvane {

namespace {

class ClipMatcher {
public:
    ClipMatcher(const BaseContent& base, const EditedArtwork& artwork, const Matching& matching)
        : number_(base.number), trace_(base.trace), artwork_(artwork), matching_(matching) {
        result_.links.resize(artwork.groups.size());
        result_.changedBy.resize(trace_.clipCount());
        result_.released.resize(trace_.clipCount());
        owners_.resize(trace_.clipCount());
    }

    ClipMatching match() {
        for (EditedIndex group = 1; group < artwork_.groups.size(); ++group) {
            if (artwork_.groups[group].clip != Art::null) {
                claim(group, bySource(artwork_.groups[group].clip));
            }
        }
        matchByLook();
        settleOwners();
        release();
        return std::move(result_);
    }

private:
    std::uint32_t startOf(TraceIndex link) const {
        return trace_.events()[trace_.clip(link).event].start;
    }

    TraceIndex bySource(Art clip) const {
        ArtSource source;
        callHost(slot::getArtSource, clip, &source);
        TraceIndex low = 1;
        auto high = static_cast<TraceIndex>(trace_.clipCount());
        while (low < high) {
            const TraceIndex middle = low + (high - low) / 2;
            if (std::int64_t{startOf(middle)} < source.start) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        const bool isHere = source.end > 0 && source.content == number_ &&
                            low < trace_.clipCount() && startOf(low) == source.start &&
                            trace_.events()[trace_.clip(low).event].end == source.end;
        return isHere ? low : 0;
    }

    bool isAlive(TraceIndex link) const {
        return link != 0 && trace_.clip(link).holds && trace_.clip(link).art != Art::null;
    }

    bool isSame(TraceIndex link, EditedIndex group) const {
        return sameClip(trace_.clip(link).art, artwork_.groups[group].clip);
    }

    void claim(EditedIndex group, TraceIndex link) {
        if (!isAlive(link)) {
            return;
        }
        result_.links[group] = link;
        EditedIndex& owner = owners_[link];
        if (owner == 0 || (!isSame(link, owner) && isSame(link, group))) {
            owner = group;
        }
    }

    /// Groups that have no source: among the clips around the first object that they hold.
    void matchByLook() {
        std::vector<bool> tried(artwork_.groups.size());
        for (EditedIndex i = 0; i < matching_.objects.size(); ++i) {
            const MatchedObject& object = matching_.objects[i];
            if (object.source == noSource || object.isCopy) {
                continue;
            }
            const TraceIndex clip = trace_.clipAround(trace_.painted()[object.source].event);
            for (EditedIndex group = artwork_.objects[i].group; group != 0 && !tried[group];
                 group = artwork_.groups[group].outer) {
                tried[group] = true;
                if (artwork_.groups[group].clip != Art::null && result_.links[group] == 0) {
                    claim(group, sameAround(clip, group));
                }
            }
        }
    }

    TraceIndex sameAround(TraceIndex link, EditedIndex group) const {
        while (link != 0 && !(isAlive(link) && isSame(link, group))) {
            link = trace_.clip(link).outer;
        }
        return link;
    }

    /// What text clips stays: its operators may paint as well.
    bool canChange(TraceIndex link) const {
        const TraceEvent& event = trace_.events()[trace_.clip(link).event];
        return event.role == OperatorRole::paintPath && !trace_.clip(link).hides &&
               trace_.clip(link).depth <= budget::comparedClips &&
               isPlainPath(trace_, trace_.clip(link).event) && !event.behind.isInText &&
               inverse(trace_.matrix(event.behind.matrix)).has_value();
    }

    void settleOwners() {
        for (TraceIndex link = 1; link < owners_.size(); ++link) {
            const EditedIndex owner = owners_[link];
            if (owner != 0 && !isSame(link, owner)) {
                if (canChange(link)) {
                    result_.changedBy[link] = owner;
                } else {
                    result_.links[owner] = 0;
                }
            }
        }
        for (EditedIndex group = 1; group < artwork_.groups.size(); ++group) {
            TraceIndex& link = result_.links[group];
            if (link == 0) {
                continue;
            }
            const EditedIndex changed = result_.changedBy[link];
            const bool isIt =
                changed == 0 ? isSame(link, group)
                             : sameClip(artwork_.groups[changed].clip, artwork_.groups[group].clip);
            link = isIt ? link : 0;
        }
    }

    /// By clip: one behind the last clip within it. Clips are numbered as they were met, so those
    /// within one follow it without a gap.
    std::vector<TraceIndex> endsOfClips() const {
        std::vector<TraceIndex> ends(trace_.clipCount());
        for (auto link = static_cast<TraceIndex>(ends.size()); link-- > 1;) {
            ends[link] = std::max(ends[link], link + 1);
            TraceIndex& outer = ends[trace_.clip(link).outer];
            outer = std::max(outer, ends[link]);
        }
        return ends;
    }

    /// Clips that hold objects, none of which is within them in the artwork.
    void release() {
        const std::vector<TraceIndex> ends = endsOfClips();
        std::vector<bool> keeps(trace_.clipCount());
        std::vector<bool> holds(trace_.clipCount());
        EditedIndex lastGroup = 0;
        TraceIndex lastClip = 0;
        for (EditedIndex i = 0; i < matching_.objects.size(); ++i) {
            const MatchedObject& object = matching_.objects[i];
            if (object.source == noSource || object.isCopy) {
                continue;
            }
            const TraceIndex clip = trace_.clipAround(trace_.painted()[object.source].event);
            const EditedIndex group = artwork_.objects[i].group;
            holds[clip] = true;
            if (group == lastGroup && clip == lastClip) {
                continue;
            }
            lastGroup = group;
            lastClip = clip;
            for (EditedIndex each = group; each != 0; each = artwork_.groups[each].outer) {
                const TraceIndex link = result_.links[each];
                keeps[link] = keeps[link] || (link <= clip && clip < ends[link]);
            }
        }
        for (auto link = static_cast<TraceIndex>(holds.size()); link-- > 1;) {
            result_.released[link] =
                holds[link] && !keeps[link] && isAlive(link) && canChange(link);
            holds[trace_.clip(link).outer] = holds[trace_.clip(link).outer] || holds[link];
        }
    }

    std::int32_t number_;
    const ContentTrace& trace_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    std::vector<EditedIndex> owners_; // by clip: the group that it is first of all
    ClipMatching result_;
};

/// Whether a clip leaves all of an object that reaches so far.
bool cutsNothing(Art clip, const ArtExtent& extent) {
    const std::optional<ArtExtent> rectangle = rectangleOf(clip);
    return rectangle && rectangle->contains(extent);
}

} // namespace

ClipMatching matchClips(const BaseContent& base, const EditedArtwork& artwork,
                        const Matching& matching) {
    return ClipMatcher(base, artwork, matching).match();
}

bool isClippedAlike(const BaseContent& base, const EditedArtwork& artwork,
                    const ClipMatching& clips, TraceIndex clip, const EditedObject& object) {
    const ContentTrace& trace = base.trace;
    if (trace.clip(clip).depth > budget::comparedClips) {
        return true;
    }
    EditedIndex group = object.group;
    std::optional<ArtExtent> extent;
    const auto leaves = [&](Art each) {
        extent = extent ? extent : extentOf(object.art);
        return cutsNothing(each, *extent);
    };
    for (;;) {
        clip = clips.unreleased(trace, clip);
        while (clip != 0 && trace.clip(clip).art == Art::null) {
            clip = clips.unreleased(trace, trace.clip(clip).outer);
        }
        while (group != 0 && artwork.groups[group].clip == Art::null) {
            group = artwork.groups[group].outer;
        }
        if (clip == 0 && group == 0) {
            return true;
        }
        if (clip != 0 && group != 0 && clips.links[group] == clip) {
            clip = trace.clip(clip).outer;
            group = artwork.groups[group].outer;
        } else if (clip != 0 && trace.clip(clip).holds && clips.changedBy[clip] == 0 &&
                   leaves(trace.clip(clip).art)) {
            clip = trace.clip(clip).outer;
        } else if (group != 0 && leaves(artwork.groups[group].clip)) {
            group = artwork.groups[group].outer;
        } else {
            return false;
        }
    }
}

} // namespace corvane
