#include "writer/patch/insertion_points.h"

#include "host/matrix.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <tuple>

namespace corvane {

namespace {

bool isMarkAround(const ContentTrace& trace, TraceIndex outer, TraceIndex inner) {
    // Links are numbered in the order in which they were added.
    while (inner > outer) {
        inner = trace.mark(inner).outer;
    }
    return inner == outer;
}

} // namespace

TraceIndex commonMark(const ContentTrace& trace, TraceIndex a, TraceIndex b) {
    while (a != b) {
        if (a > b) {
            a = trace.mark(a).outer;
        } else {
            b = trace.mark(b).outer;
        }
    }
    return a;
}

void InsertionPoints::useGroup(EditedIndex group) {
    group_ = group;
    wanted_.clear();
    for (; group != 0; group = artwork_.groups[group].outer) {
        if (artwork_.groups[group].clip != Art::null) {
            wanted_.push_back(clips_.links[group]);
        }
    }
    std::ranges::reverse(wanted_);
}

bool InsertionPoints::isAround(TraceIndex clip, const Surroundings& inner) const {
    TraceIndex link = inner.clip;
    while (link > clip) {
        link = trace_.clip(link).outer;
    }
    return link == clip;
}

std::uint32_t InsertionPoints::hiddenClips(TraceIndex clip) const {
    std::uint32_t count = 0;
    for (; clip != 0; clip = trace_.clip(clip).outer) {
        count += trace_.clip(clip).art == Art::null ? 1 : 0;
    }
    return count;
}

bool InsertionPoints::fits(const Surroundings& here, InsertionPoint& point) {
    if (here.isInText || here.isInPath || !inverse(trace_.matrix(here.matrix))) {
        return false;
    }
    around_.clear();
    for (TraceIndex link = here.clip; link != 0; link = trace_.clip(link).outer) {
        if (trace_.clip(link).art != Art::null) {
            if (!clips_.released[link]) {
                around_.push_back(link);
            }
        } else if (own_ != nullptr ? !isAround(link, *own_)
                                   : !isAround(link, gap_.before) || !isAround(link, gap_.behind)) {
            return false;
        }
    }
    if (own_ != nullptr && hiddenClips(own_->clip) != hiddenClips(here.clip)) {
        return false;
    }
    if (around_.size() > wanted_.size() ||
        !std::equal(around_.rbegin(), around_.rend(), wanted_.begin())) {
        return false;
    }
    point.inForce = here;
    point.ownClips = static_cast<std::uint32_t>(around_.size());
    return true;
}

std::optional<InsertionPoint> InsertionPoints::find(const InsertionGap& gap, EditedIndex group,
                                                    const Surroundings* own) {
    // What found a place there finds it again: only the places before it were passed over.
    const bool isSame = latest_ && group == group_ && own == nullptr && own_ == nullptr &&
                        gap.first == latest_->event && gap.last == gap_.last;
    if (isSame) {
        return latest_;
    }
    useGroup(group);
    gap_ = gap;
    own_ = own;
    searched_ += gap.last - std::min(gap.first, gap.last);
    if (searched_ > budget::searchedPlaces) {
        failException(Exception::limit);
    }
    const TraceIndex common = commonMark(trace_, gap.before.mark, gap.behind.mark);
    std::optional<InsertionPoint> best;
    std::tuple<std::uint32_t, std::uint32_t> bestRank;
    for (TraceIndex event = gap.first; event <= gap.last; ++event) {
        const Surroundings& here =
            event == 0 ? trace_.atStart() : trace_.events()[event - 1].behind;
        InsertionPoint point{.event = event};
        if (!isMarkAround(trace_, here.mark, common) || !fits(here, point)) {
            continue;
        }
        const std::tuple rank(trace_.mark(here.mark).depth, point.ownClips);
        if (!best || rank >= bestRank) {
            best = point;
            bestRank = rank;
        }
    }
    return latest_ = best;
}

} // namespace corvane
