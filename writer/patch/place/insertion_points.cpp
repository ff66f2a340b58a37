#include "writer/patch/place/insertion_points.h"

#include "host/matrix.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "writer/patch/place/trace_links.h"

#include <algorithm>
#include <tuple>

namespace corvane {

namespace {

bool isMarkAround(const ContentTrace& trace, TraceIndex outer, TraceIndex inner) {
    while (inner > outer) {
        inner = trace.mark(inner).outer;
    }
    return inner == outer;
}

} // namespace

InsertionPoints::InsertionPoints(const BaseContent& base, const EditedArtwork& artwork,
                                 const ClipMatching& clips, GatheredState& state)
    : trace_(base.trace), layers_(base.layers), artwork_(artwork), clips_(clips), state_(state) {
    findTextOutside();
    findMarkLayers();
}

void InsertionPoints::findMarkLayers() {
    if (!layers_.any()) {
        return;
    }
    charge_.resize(static_cast<std::int64_t>(trace_.markCount() * sizeof(LayerChain)));
    markLayers_.resize(trace_.markCount());
    for (TraceIndex mark = 1; mark < markLayers_.size(); ++mark) {
        const MarkLink& link = trace_.mark(mark);
        markLayers_[mark] = layers_.within(markLayers_[link.outer], link.layer);
    }
}

void InsertionPoints::findTextOutside() {
    const std::span<const TraceEvent> events = trace_.events();
    const auto isOutside = [](const TraceEvent& event) {
        return event.role == OperatorRole::show && !event.behind.isInText;
    };
    if (std::ranges::none_of(events, isOutside)) {
        return;
    }
    beforeTextOutside_.resize(events.size() + 1);
    for (std::size_t place = events.size(); place-- > 0;) {
        beforeTextOutside_[place] =
            isOutside(events[place]) ||
            (events[place].role != OperatorRole::beginText && beforeTextOutside_[place + 1]);
    }
}

void InsertionPoints::useGroup(EditedIndex group) {
    group_ = group;
    wanted_.clear();
    wantedLayers_ = artwork_.groups[group].layers;
    for (; group != 0; group = artwork_.groups[group].outer) {
        if (artwork_.groups[group].clip != Art::null) {
            wanted_.push_back(clips_.links[group]);
        }
    }
    std::ranges::reverse(wanted_);
}

TraceIndex InsertionPoints::sharedClip(TraceIndex clip) const {
    return former_
               ? commonClip(trace_, clip, former_->clip)
               : commonClip(trace_, commonClip(trace_, clip, gap_.before.clip), gap_.behind.clip);
}

/// Whether the text object can end here and go on in another one.
bool InsertionPoints::canResume(const Surroundings& here) const {
    const TextObjectPlace& place = trace_.textPlace(here.text);
    return !place.addsToClip && trace_.events()[place.begin].behind.mark == here.mark &&
           (place.along == 0 || place.unit != 0) && place.across == 0 &&
           inverse(place.line).has_value();
}

/// `common`: the innermost around both neighbours.
bool InsertionPoints::isMarkAllowed(TraceIndex mark, TraceIndex common) const {
    return isMarkAround(trace_, mark, common) ||
           (former_ && isMarkAround(trace_, mark, former_->mark));
}

bool InsertionPoints::fits(const Surroundings& here, InsertionPoint& point) {
    if (here.isInPath || !inverse(trace_.matrix(here.matrix)) ||
        (here.isInText && !canResume(here)) ||
        (former_ && !state_.canWriteInitial(former_->roles, here.setter))) {
        return false;
    }
    const LayerChain layers = markLayers_.empty() ? 0 : markLayers_[here.mark];
    if (!layers_.chains().isAround(layers, wantedLayers_)) {
        return false;
    }
    around_.clear();
    const TraceIndex shared = sharedClip(here.clip);
    for (TraceIndex link = here.clip; link != 0; link = trace_.clip(link).outer) {
        if (trace_.clip(link).art != Art::null) {
            if (!clips_.released[link]) {
                around_.push_back(link);
            }
        } else if (link > shared) {
            return false;
        }
    }
    if (former_ && former_->hiddenClips != hiddenClips(trace_, here.clip)) {
        return false;
    }
    if (around_.size() > wanted_.size() ||
        !std::equal(around_.rbegin(), around_.rend(), wanted_.begin())) {
        return false;
    }
    point.inForce = here;
    point.ownClips = static_cast<std::uint32_t>(around_.size());
    point.ownLayers = layers_.chains().depth(layers);
    return true;
}

std::optional<InsertionPoint> InsertionPoints::find(const InsertionGap& gap,
                                                    const InsertedUnit& unit) {
    // What found a place there finds it again: only the places before it were passed over.
    const bool isSame = latest_ && unit.group == group_ && unit.isText == isText_ && !unit.former &&
                        !former_ && gap.first == latest_->event && gap.last == gap_.last;
    if (isSame) {
        return latest_;
    }
    useGroup(unit.group);
    gap_ = gap;
    former_ = unit.former;
    isText_ = unit.isText;
    const TraceIndex common = commonMark(trace_, gap.before.mark, gap.behind.mark);
    std::optional<InsertionPoint> best;
    // How much of its own and of all marked content, and of its group's clips, is around it.
    std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, bool> bestRank;
    for (TraceIndex event = gap.first; event <= gap.last; ++event) {
        const Surroundings& here =
            event == 0 ? trace_.atStart() : trace_.events()[event - 1].behind;
        searched_ += 1 + trace_.clip(here.clip).depth + trace_.mark(here.mark).depth;
        if (searched_ > budget::searchedPlaces) {
            failException(Exception::limit);
        }
        InsertionPoint point{.event = event};
        if (isText_ && !here.isInText && !beforeTextOutside_.empty() && beforeTextOutside_[event]) {
            continue;
        }
        if (!isMarkAllowed(here.mark, common) || !fits(here, point)) {
            continue;
        }
        const TraceIndex kept = former_ ? commonMark(trace_, here.mark, former_->mark) : 0;
        const std::tuple rank(trace_.mark(kept).depth, trace_.mark(here.mark).depth, point.ownClips,
                              !here.isInText);
        if (!best || rank >= bestRank) {
            best = point;
            bestRank = rank;
        }
    }
    return latest_ = best;
}

} // namespace corvane
