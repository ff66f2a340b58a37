#include "app/svg/read/values/path_length.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/geometry/path_walk.h"

#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// The length of a curve of Bezier: five points of Gauss in each of four parts, which is right to
/// about a millionth where the curve has no cusp.
double lengthOfCurve(const Segment& from, const Segment& to) {
    constexpr std::array<std::pair<double, double>, 5> places{
        {{0, 128.0 / 225},
         {-0.5384693101056831, 0.4786286704993665},
         {0.5384693101056831, 0.4786286704993665},
         {-0.9061798459386640, 0.2369268850561891},
         {0.9061798459386640, 0.2369268850561891}}};
    constexpr int parts = 4;
    const std::array<RealPoint, 4> points{realPoint(from.anchor), realPoint(from.out),
                                          realPoint(to.in), realPoint(to.anchor)};
    const auto speed = [&](double t) {
        const double u = 1 - t;
        const std::array<double, 3> weights{3 * u * u, 6 * u * t, 3 * t * t};
        RealPoint sum;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            sum.x += weights[i] * (points[i + 1].x - points[i].x);
            sum.y += weights[i] * (points[i + 1].y - points[i].y);
        }
        return std::hypot(sum.x, sum.y);
    };
    double length = 0;
    for (int part = 0; part < parts; ++part) {
        for (const auto& [place, weight] : places) {
            length += weight / (2 * parts) * speed((part + (place + 1) / 2) / parts);
        }
    }
    return length;
}

} // namespace

double lengthOf(std::span<const Segment> segments, bool closed) {
    double length = 0;
    for (std::size_t i = 1; i < segments.size(); ++i) {
        length += lengthOfCurve(segments[i - 1], segments[i]);
    }
    return length +
           (closed && !segments.empty() ? lengthOfCurve(segments.back(), segments.front()) : 0);
}

double lengthOf(const Document& document, Art shape) {
    double length = 0;
    forEachPath(document, shape, [&](Art path) {
        const Segments view = document.segments(path);
        const std::vector<Segment> segments(view.begin(), view.end());
        length += lengthOf(segments, document.closed(path));
    });
    return length;
}

} // namespace corvane
