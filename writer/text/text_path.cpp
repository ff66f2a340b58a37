#include "writer/text/text_path.h"

#include "runtime/fixed.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

RealPoint realPoint(const Point& point) {
    return {realFromFixed(point.x), realFromFixed(point.y)};
}

double distance(RealPoint a, RealPoint b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

} // namespace

MeasuredPath::MeasuredPath(std::span<const Segment> segments, bool isClosed) {
    if (segments.empty()) {
        return;
    }
    steps_.push_back({realPoint(segments[0].anchor), 0});
    for (std::size_t i = 1; i < segments.size(); ++i) {
        addCurve(segments[i - 1], segments[i]);
    }
    if (isClosed) {
        addCurve(segments.back(), segments.front());
    }
}

void MeasuredPath::addLine(RealPoint to) {
    const Step& last = steps_.back();
    const double length = distance(last.to, to);
    if (length > 0) {
        steps_.push_back({to, last.end + length});
    }
}

/// In lines that turn little: letters stand on a curve within a hundredth of a point.
void MeasuredPath::addCurve(const Segment& from, const Segment& to) {
    const RealPoint a = realPoint(from.anchor);
    const RealPoint b = realPoint(from.out);
    const RealPoint c = realPoint(to.in);
    const RealPoint d = realPoint(to.anchor);
    if (from.out == from.anchor && to.in == to.anchor) {
        return addLine(d);
    }
    constexpr double fewest = 16;
    constexpr double most = 512;
    const double around = distance(a, b) + distance(b, c) + distance(c, d);
    const auto count = static_cast<int>(std::clamp(around, fewest, most));
    for (int i = 1; i <= count; ++i) {
        const double t = static_cast<double>(i) / count;
        const double s = 1 - t;
        const auto mix = [&](double p, double q, double r, double z) {
            return s * s * s * p + 3 * s * s * t * q + 3 * s * t * t * r + t * t * t * z;
        };
        addLine({mix(a.x, b.x, c.x, d.x), mix(a.y, b.y, c.y, d.y)});
    }
}

std::optional<RealMatrix> MeasuredPath::at(double distance) const {
    if (steps_.size() < 2 || !(distance >= 0) || distance > steps_.back().end) {
        return std::nullopt;
    }
    const auto next =
        std::ranges::lower_bound(steps_.begin() + 1, steps_.end(), distance, {}, &Step::end);
    const Step& from = *std::prev(next);
    const double length = next->end - from.end;
    const double x = (next->to.x - from.to.x) / length;
    const double y = (next->to.y - from.to.y) / length;
    const double along = distance - from.end;
    return RealMatrix{x, y, -y, x, from.to.x + along * x, from.to.y + along * y};
}

} // namespace corvane
