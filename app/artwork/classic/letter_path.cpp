#include "app/artwork/classic/letter_path.h"

#include "app/artwork/geometry/geometry.h"

#include <algorithm>
#include <cmath>

namespace corvane {

LetterPath::LetterPath(std::span<const Segment> segments, bool closed) {
    if (segments.size() < 2) {
        return;
    }
    points_.push_back({realPoint(segments.front().anchor), 0});
    for (std::size_t i = 1; i < segments.size(); ++i) {
        addCurve(segments[i - 1], segments[i]);
    }
    if (closed) {
        addCurve(segments.back(), segments.front());
    }
    if (points_.size() < 2) {
        points_.clear();
    }
}

/// As straight pieces, those of no length left out.
void LetterPath::addCurve(const Segment& from, const Segment& to) {
    constexpr int pieces = 32;
    const RealPoint a = realPoint(from.anchor);
    const RealPoint b = realPoint(from.out);
    const RealPoint c = realPoint(to.in);
    const RealPoint d = realPoint(to.anchor);
    const bool isStraight = from.out == from.anchor && to.in == to.anchor;
    for (int i = isStraight ? pieces : 1; i <= pieces; ++i) {
        const double t = static_cast<double>(i) / pieces;
        const double u = 1 - t;
        const auto mixed = [&](double p, double q, double r, double s) {
            return u * u * u * p + 3 * u * u * t * q + 3 * u * t * t * r + t * t * t * s;
        };
        const RealPoint point{mixed(a.x, b.x, c.x, d.x), mixed(a.y, b.y, c.y, d.y)};
        const Stop& last = points_.back();
        const double length = std::hypot(point.x - last.point.x, point.y - last.point.y);
        if (length > 0) {
            points_.push_back({point, last.distance + length});
        }
    }
}

RealMatrix LetterPath::at(double distance) const {
    const auto behind = std::ranges::lower_bound(points_, distance, {}, &Stop::distance);
    const auto place =
        std::clamp<std::ptrdiff_t>(behind - points_.begin(), 1, std::ssize(points_) - 1);
    const Stop& from = points_[static_cast<std::size_t>(place - 1)];
    const Stop& to = points_[static_cast<std::size_t>(place)];
    const double length = to.distance - from.distance;
    const double x = (to.point.x - from.point.x) / length;
    const double y = (to.point.y - from.point.y) / length;
    const double along = distance - from.distance;
    return {x, y, -y, x, from.point.x + along * x, from.point.y + along * y};
}

} // namespace corvane
