#include "writer/patch/paint_order.h"

#include "host/matrix.h"
#include "runtime/exception.h"
#include "writer/patch/insertion_points.h"
#include "writer/patch/path_bytes.h"
#include "writer/patch/text/show_patches.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace corvane {

namespace {

/// Whether what an edit changed can be drawn in the place of the old bytes.
bool canStay(const ContentTrace& trace, PaintedIndex source, const ArtDifference& difference) {
    const PaintedArt& painted = trace.painted()[source];
    if (painted.setting != 0) {
        return !difference.any() || isShownInPlace(trace, painted, difference);
    }
    const TraceIndex index = painted.event;
    const Surroundings& here = trace.events()[index].behind;
    const bool isApart = painted.isImage || painted.isForm || painted.isShading || painted.isStencil
                             ? !here.isInPath
                             : isPlainPath(trace, index);
    return !difference.any() ||
           (!here.isInText && isApart && inverse(trace.matrix(here.matrix)).has_value());
}

/// Of objects whose numbers in the order of the page these are: the longest run that ascends. Of
/// runs that are as long, one of the objects farthest in the back: what is written apart goes up,
/// in front of things that are not in the artwork, and not down behind them.
std::vector<EditedIndex> longestRun(const std::vector<EditedIndex>& objects,
                                    const Matching& matching) {
    constexpr auto none = EditedIndex(-1);
    std::vector<EditedIndex> starts;                     // of runs, by length less one
    std::vector<EditedIndex> next(objects.size(), none); // in the best run from each object
    const auto sourceOf = [&](EditedIndex at) { return matching.objects[objects[at]].source; };
    for (auto at = static_cast<EditedIndex>(objects.size()); at-- > 0;) {
        const auto place =
            std::ranges::lower_bound(starts, sourceOf(at), std::ranges::greater(), sourceOf);
        next[at] = place == starts.begin() ? none : *(place - 1);
        if (place == starts.end()) {
            starts.push_back(at);
        } else {
            *place = at;
        }
    }
    std::vector<EditedIndex> run;
    for (EditedIndex at = starts.empty() ? none : starts.back(); at != none; at = next[at]) {
        run.push_back(objects[at]);
    }
    return run;
}

class Placer {
public:
    Placer(const BaseContent& base, const EditedArtwork& artwork, const Matching& matching,
           const ClipMatching& clips, GatheredState& state)
        : base_(base), trace_(base.trace), artwork_(artwork), matching_(matching), clips_(clips),
          points_(base, artwork, clips, state) {}

    PaintOrder place() {
        chooseStaying();
        for (EditedIndex object = 0; object < artwork_.objects.size(); ++object) {
            if (!order_.stays[object]) {
                pending_.push_back(object);
            } else {
                placeBefore(object);
            }
        }
        placeAtEnd();
        return std::move(order_);
    }

private:
    void chooseStaying() {
        std::vector<EditedIndex> able;
        for (EditedIndex i = 0; i < matching_.objects.size(); ++i) {
            const MatchedObject& object = matching_.objects[i];
            if (object.source == noSource || object.isCopy || isInForm(artwork_.objects[i])) {
                continue;
            }
            const TraceIndex clip = trace_.clipAround(trace_.painted()[object.source].event);
            if (canStay(trace_, object.source, object.difference) &&
                base_.layers.isAlike(trace_.painted()[object.source].art,
                                     artwork_.groups[artwork_.objects[i].group].layers) &&
                isClippedAlike(base_, artwork_, clips_, clip, artwork_.objects[i])) {
                able.push_back(i);
            }
        }
        order_.stays.resize(matching_.objects.size());
        for (const EditedIndex object : longestRun(able, matching_)) {
            order_.stays[object] = true;
        }
    }

    /// Whether it is drawn in a form, for a group that is laid over what is behind it as one thing.
    bool isInForm(const EditedObject& object) const {
        EditedIndex group = object.group;
        while (group != 0 && !artwork_.groups[group].isLooked()) {
            group = artwork_.groups[group].outer;
        }
        return group != 0;
    }

    TraceIndex pathOf(EditedIndex object) const {
        return trace_.painted()[matching_.objects[object].source].event;
    }

    /// What was in force where a moved object, or the original of a copy, stood.
    const Surroundings* ownOf(EditedIndex object) const {
        const PaintedIndex source = matching_.objects[object].source;
        return source == noSource ? nullptr : &eventOf(trace_, source).behind;
    }

    /// Places what is pending between the object that stays before and this one. If one of them has
    /// no place, this one is written apart behind it.
    void placeBefore(EditedIndex object) {
        const TraceIndex path = pathOf(object);
        const InsertionGap gap{.first = next_,
                               .last = firstWithin(trace_, path),
                               .before = before_ ? *before_ : trace_.atStart(),
                               .behind = trace_.events()[path].behind};
        InsertionGap rest = gap;
        for (std::size_t i = 0; i < pending_.size(); ++i) {
            const std::optional<InsertionPoint> point =
                points_.find(rest, artwork_.objects[pending_[i]], ownOf(pending_[i]));
            if (!point) {
                pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(i));
                pending_.push_back(object);
                order_.stays[object] = false;
                return;
            }
            order_.insertions.push_back({pending_[i], *point});
            rest.first = next_ = point->event;
        }
        pending_.clear();
        before_ = trace_.events()[path].behind;
        next_ = path + 1;
    }

    bool hasHiddenClip(const Surroundings* own) const {
        TraceIndex clip = own == nullptr ? 0 : own->clip;
        while (clip != 0 && trace_.clip(clip).art != Art::null) {
            clip = trace_.clip(clip).outer;
        }
        return clip != 0;
    }

    /// The last event that something new may stand in front of. Failed operators at the end may
    /// be what is left open there.
    TraceIndex lastPlace() const {
        auto last = static_cast<TraceIndex>(trace_.events().size());
        while (trace_.endsOpen() && last > 0 && trace_.events()[last - 1].isFailed) {
            --last;
        }
        return last;
    }

    /// A place within the object's own marked content, close behind where it stood: there it keeps
    /// its tag.
    std::optional<InsertionPoint> placeInOwnMark(EditedIndex object) {
        constexpr TraceIndex farthest = 64;
        const Surroundings* const own = ownOf(object);
        if (own == nullptr || own->mark == 0 || isAtEnd_) {
            return std::nullopt;
        }
        const InsertionGap gap{.first = std::max(next_, pathOf(object) + 1),
                               .last = std::min(lastPlace(), pathOf(object) + farthest),
                               .before = *own,
                               .behind = *own};
        const std::optional<InsertionPoint> point =
            points_.find(gap, artwork_.objects[object], own);
        return point && point->inForce.mark == own->mark ? point : std::nullopt;
    }

    /// A place close behind where the object stood, if another one must come behind it that has a
    /// tag to keep: at the very end it would take that from it.
    std::optional<InsertionPoint> placeBeforeMarked(std::size_t pending) {
        if (isAtEnd_ || pending + 1 == pending_.size()) {
            return std::nullopt;
        }
        const EditedIndex object = pending_[pending];
        const EditedIndex next = pending_[pending + 1];
        const Surroundings* const behind = ownOf(next);
        if (behind == nullptr || behind->mark == 0 || pathOf(next) < pathOf(object)) {
            return std::nullopt;
        }
        const InsertionGap gap{.first = std::max(next_, pathOf(object) + 1),
                               .last = std::max(next_, firstWithin(trace_, pathOf(next))),
                               .before = *ownOf(object),
                               .behind = *behind};
        return points_.find(gap, artwork_.objects[object], ownOf(object));
    }

    /// What is in front of all that stays is in front of everything else on the page, too, unless
    /// that would take its tag.
    void placeAtEnd() {
        for (std::size_t i = 0; i < pending_.size(); ++i) {
            const EditedIndex object = pending_[i];
            const Surroundings* const own = ownOf(object);
            std::optional<InsertionPoint> point = placeInOwnMark(object);
            if (!point && own != nullptr && !hasHiddenClip(own)) {
                point = placeBeforeMarked(i);
            }
            if (point) {
                order_.insertions.push_back({object, *point});
                next_ = point->event;
                continue;
            }
            if (!hasHiddenClip(own) && !trace_.endsOpen()) {
                const InsertionPoint end{.isAtEnd = true,
                                         .event = static_cast<TraceIndex>(trace_.events().size())};
                order_.insertions.push_back({object, end});
                next_ = end.event;
                isAtEnd_ = true;
                continue;
            }
            const InsertionGap gap{.first = next_,
                                   .last = lastPlace(),
                                   .before = before_ ? *before_ : trace_.atStart(),
                                   .behind = trace_.atEnd()};
            point = isAtEnd_ ? std::nullopt : points_.find(gap, artwork_.objects[object], own);
            if (!point) {
                failException(Exception::unpatchable);
            }
            order_.insertions.push_back({object, *point});
            next_ = point->event;
        }
    }

    const BaseContent& base_;
    const ContentTrace& trace_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    const ClipMatching& clips_;
    InsertionPoints points_;
    PaintOrder order_;
    std::vector<EditedIndex> pending_;
    std::optional<Surroundings> before_;
    TraceIndex next_ = 0;
    bool isAtEnd_ = false;
};

} // namespace

PaintOrder orderObjects(const BaseContent& base, const EditedArtwork& artwork,
                        const Matching& matching, const ClipMatching& clips, GatheredState& state) {
    return Placer(base, artwork, matching, clips, state).place();
}

} // namespace corvane
