#include "writer/patch/place/paint_order.h"

#include "host/matrix.h"
#include "runtime/exception.h"
#include "writer/patch/path_bytes.h"
#include "writer/patch/place/inserted_unit.h"
#include "writer/patch/place/insertion_points.h"
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
          state_(state), points_(base, artwork, clips, state) {}

    PaintOrder place() {
        chooseStaying();
        for (EditedIndex object = 0; object < artwork_.objects.size();) {
            if (order_.stays[object]) {
                placeBefore(object++);
            } else {
                pending_.push_back(unitOf(object));
                object = pending_.back().end;
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
            if (object.source == noSource || object.isCopy ||
                artwork_.wholeAround(artwork_.objects[i]) != 0) {
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

    TraceIndex pathOf(EditedIndex object) const {
        return trace_.painted()[matching_.objects[object].source].event;
    }

    InsertedUnit unitOf(EditedIndex object) {
        return unitFrom(object, base_, artwork_, matching_, state_);
    }

    void insert(const InsertedUnit& unit, const InsertionPoint& point) {
        for (EditedIndex object = unit.first; object < unit.end; ++object) {
            order_.insertions.push_back({object, point});
        }
        next_ = point.event;
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
            const std::optional<InsertionPoint> point = points_.find(rest, pending_[i]);
            if (!point) {
                pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(i));
                pending_.push_back(unitOf(object));
                order_.stays[object] = false;
                return;
            }
            insert(pending_[i], *point);
            rest.first = next_;
        }
        pending_.clear();
        before_ = trace_.events()[path].behind;
        next_ = path + 1;
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

    /// A place within the unit's own marked content, close behind where it stood: there it keeps
    /// its tag.
    std::optional<InsertionPoint> placeInOwnMark(const InsertedUnit& unit) {
        constexpr TraceIndex farthest = 64;
        if (!unit.former || unit.former->mark == 0 || isAtEnd_) {
            return std::nullopt;
        }
        const FormerPlace& former = *unit.former;
        const InsertionGap gap{.first = std::max(next_, former.latest + 1),
                               .last = std::min(lastPlace(), former.latest + farthest),
                               .before = {.mark = former.mark},
                               .behind = {.mark = former.mark}};
        const std::optional<InsertionPoint> point = points_.find(gap, unit);
        return point && point->inForce.mark == former.mark ? point : std::nullopt;
    }

    /// A place close behind where the unit stood, if another one must come behind it that has a
    /// tag to keep: at the very end it would take that from it.
    std::optional<InsertionPoint> placeBeforeMarked(std::size_t pending) {
        if (isAtEnd_ || pending + 1 == pending_.size()) {
            return std::nullopt;
        }
        const std::optional<FormerPlace>& former = pending_[pending].former;
        const std::optional<FormerPlace>& behind = pending_[pending + 1].former;
        if (!former || !behind || former->hiddenClips != 0 || behind->mark == 0 ||
            behind->latest < former->latest) {
            return std::nullopt;
        }
        const InsertionGap gap{.first = std::max(next_, former->latest + 1),
                               .last = std::max(next_, firstWithin(trace_, behind->latest)),
                               .before = {.mark = former->mark},
                               .behind = {.mark = behind->mark}};
        return points_.find(gap, pending_[pending]);
    }

    InsertionPoint placeOf(std::size_t pending) {
        const InsertedUnit& unit = pending_[pending];
        std::optional<InsertionPoint> point = placeInOwnMark(unit);
        if (!point) {
            point = placeBeforeMarked(pending);
        }
        if (point) {
            return *point;
        }
        const bool isHidden = unit.former && unit.former->hiddenClips != 0;
        if (!isHidden && !trace_.endsOpen()) {
            isAtEnd_ = true;
            return {.isAtEnd = true, .event = static_cast<TraceIndex>(trace_.events().size())};
        }
        const InsertionGap gap{.first = next_,
                               .last = lastPlace(),
                               .before = before_ ? *before_ : trace_.atStart(),
                               .behind = trace_.atEnd()};
        point = isAtEnd_ ? std::nullopt : points_.find(gap, unit);
        if (!point) {
            failException(Exception::unpatchable);
        }
        return *point;
    }

    /// What is in front of all that stays is in front of everything else on the page, too, unless
    /// that would take its tag.
    void placeAtEnd() {
        for (std::size_t i = 0; i < pending_.size(); ++i) {
            insert(pending_[i], placeOf(i));
        }
    }

    const BaseContent& base_;
    const ContentTrace& trace_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    const ClipMatching& clips_;
    GatheredState& state_;
    InsertionPoints points_;
    PaintOrder order_;
    std::vector<InsertedUnit> pending_;
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
