// A path that letters stand on: places along it.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <optional>
#include <span>
#include <vector>

namespace corvane {

class MeasuredPath {
public:
    MeasuredPath(std::span<const Segment> segments, bool isClosed);

    /// Where the path is so far from its first point, and how it runs there: the turn that leads
    /// the x axis into its direction, and the point. Nothing past its ends.
    std::optional<RealMatrix> at(double distance) const;

private:
    struct Step {
        RealPoint to;
        double end = 0; ///< from the first point of the path
    };

    void addLine(RealPoint to);
    void addCurve(const Segment& from, const Segment& to);

    std::vector<Step> steps_; ///< the first leads nowhere
};

} // namespace corvane
