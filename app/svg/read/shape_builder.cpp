#include "app/svg/read/shape_builder.h"

#include "app/artwork/geometry/arithmetic.h"
#include "app/svg/read/values/fixed_number.h"

#include <algorithm>
#include <cstdlib>
#include <span>

namespace corvane {

namespace {

/// Segments that wait for being handed over.
constexpr std::size_t blockSegments = 8192;

/// As far from its start as an end that was reached by rounded steps may lie, 16.16 points.
constexpr std::int64_t steppingError = 32;

} // namespace

void ShapeBuilder::begin(ArtPlace place, const RealMatrix& toArt, bool keepsPoints, bool measures) {
    place_ = place;
    toArt_ = toArt;
    keepsPoints_ = keepsPoints;
    measures_ = measures;
    overflowed_ = false;
    trace_ = nullptr;
    stretchesPoints_ = false;
    box_ = {};
    current_ = start_ = {};
    shape_ = path_ = Art::null;
    open_ = closed_ = false;
    flushed_ = 0;
    pending_.clear();
}

void ShapeBuilder::enter(const RealMatrix& toArt) {
    finishSubpath();
    toArt_ = toArt;
    current_ = start_ = {};
}

Point ShapeBuilder::toPoint(double x, double y) {
    const RealPoint art = transform(toArt_, {x, y});
    const std::int64_t fixedX = wideFixed(art.x);
    const std::int64_t fixedY = wideFixed(art.y);
    overflowed_ = overflowed_ || !fitsFixed(fixedX) || !fitsFixed(fixedY);
    return {saturate(fixedX), saturate(fixedY)};
}

void ShapeBuilder::moveTo(double x, double y) {
    finishSubpath();
    start_ = current_ = {x, y};
    if (trace_ != nullptr) {
        trace_->moveTo(start_);
    }
    openSubpath();
}

void ShapeBuilder::openSubpath() {
    const Point point = toPoint(start_.x, start_.y);
    open_ = true;
    closed_ = false;
    first_ = {point, point, point, 0};
    pending_.push_back(first_);
}

void ShapeBuilder::append(const Segment& segment) {
    pending_.push_back(segment);
    if (pending_.size() >= blockSegments) {
        flush(1);
    }
}

void ShapeBuilder::lineTo(double x, double y) {
    if (!open_) {
        openSubpath();
    }
    if (measures_) {
        box_.add(current_.x, current_.y);
        box_.add(x, y);
    }
    if (trace_ != nullptr) {
        trace_->lineTo({x, y});
    }
    const Point point = toPoint(x, y);
    current_ = {x, y};
    append({point, point, point, 0});
}

void ShapeBuilder::curveTo(RealPoint out, RealPoint in, RealPoint end, bool continues) {
    if (!open_) {
        openSubpath();
    }
    if (measures_) {
        box_.addCurve(current_, out, in, end);
    }
    if (trace_ != nullptr) {
        trace_->curveTo(out, in, end, continues);
    }
    pending_.back().out = toPoint(out.x, out.y);
    const Point anchor = toPoint(end.x, end.y);
    const Point before = toPoint(in.x, in.y);
    current_ = end;
    append({anchor, before, anchor, 0});
}

void ShapeBuilder::quadraticTo(RealPoint control, RealPoint end) {
    const auto nearer = [&](RealPoint anchor) {
        return RealPoint{anchor.x + (control.x - anchor.x) * 2 / 3,
                         anchor.y + (control.y - anchor.y) * 2 / 3};
    };
    curveTo(nearer(current_), nearer(end), end);
}

bool ShapeBuilder::atStart(bool stepped) const {
    const Point last = pending_.back().anchor;
    if (!stepped) {
        return last == first_.anchor;
    }
    return std::abs(std::int64_t{last.x} - first_.anchor.x) <= steppingError &&
           std::abs(std::int64_t{last.y} - first_.anchor.y) <= steppingError;
}

/// One anchor that lies on the start is the start.
void ShapeBuilder::close(bool stepped) {
    if (!open_) {
        return;
    }
    if (trace_ != nullptr) {
        trace_->close();
    }
    if (flushed_ + std::ssize(pending_) > 1 && atStart(stepped)) {
        const Segment last = pending_.back();
        first_.in = last.in == last.anchor ? first_.anchor : last.in;
        if (flushed_ == 0) {
            pending_.front().in = first_.in;
        } else {
            Segment first;
            document_.readSegments(path_, 0, {&first, 1});
            first.in = first_.in;
            document_.writeSegments(path_, 0, {&first, 1});
        }
        pending_.pop_back();
    }
    closed_ = true;
    current_ = start_;
    finishSubpath();
}

/// Hands over what is pending but the last `keep` segments.
void ShapeBuilder::flush(std::size_t keep) {
    if (path_ == Art::null) {
        if (shape_ == Art::null) {
            shape_ = path_ = document_.make(ArtKind::path, place_.placement, place_.reference);
        } else {
            if (document_.kind(shape_) == ArtKind::path) {
                const Art compound = document_.make(ArtKind::compound, Placement::behind, shape_);
                document_.reorder(shape_, Placement::inside, compound);
                shape_ = compound;
            }
            path_ = document_.make(ArtKind::path, Placement::inside, shape_);
        }
    }
    const std::size_t count = pending_.size() - std::min(keep, pending_.size());
    document_.setSegmentCount(path_, flushed_ + static_cast<std::int32_t>(count));
    document_.writeSegments(path_, flushed_, std::span(pending_).first(count));
    flushed_ += static_cast<std::int32_t>(count);
    pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(count));
}

void ShapeBuilder::stretchPoint() {
    const auto isFirst = [&](const Segment& segment) {
        return segment.anchor == first_.anchor && segment.in == first_.anchor &&
               segment.out == first_.anchor;
    };
    const bool isLine = closed_ || pending_.size() > 1; // a move alone has no caps
    if (flushed_ != 0 || !isLine || !std::ranges::all_of(pending_, isFirst)) {
        return;
    }
    constexpr Fixed step = fixedOne / 256;
    Point end = first_.anchor;
    end.x = saturate(std::int64_t{end.x} + step);
    pending_.assign(
        {Segment{first_.anchor, first_.anchor, first_.anchor, 0}, Segment{end, end, end, 0}});
    closed_ = false;
}

void ShapeBuilder::finishSubpath() {
    if (!open_) {
        return;
    }
    open_ = false;
    if (stretchesPoints_) {
        stretchPoint();
    }
    const bool lone = flushed_ == 0 && pending_.size() == 1 && !closed_;
    if (!lone || keepsPoints_) {
        flush(0);
        document_.setClosed(path_, closed_);
    }
    pending_.clear();
    path_ = Art::null;
    flushed_ = 0;
}

Art ShapeBuilder::finish(bool compound) {
    finishSubpath();
    if (overflowed_) {
        tally_.add("coordinate out of range");
    }
    if (shape_ == Art::null) {
        shape_ = document_.make(ArtKind::path, place_.placement, place_.reference);
    }
    if (compound && document_.kind(shape_) == ArtKind::path) {
        const Art outer = document_.make(ArtKind::compound, Placement::behind, shape_);
        document_.reorder(shape_, Placement::inside, outer);
        shape_ = outer;
    }
    return shape_;
}

} // namespace corvane
