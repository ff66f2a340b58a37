// A path that letters stand on, measured along its length.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"

#include <span>
#include <vector>

namespace corvane {

class LetterPath {
public:
    LetterPath(std::span<const Segment> segments, bool closed);

    bool isEmpty() const { return points_.empty(); }
    /// The place so far along the path, and its direction there; what lies beyond the ends stands
    /// on a straight continuation.
    RealMatrix at(double distance) const;

private:
    struct Stop {
        RealPoint point;
        double distance = 0;
    };
    void addCurve(const Segment& from, const Segment& to);

    std::vector<Stop> points_;
};

} // namespace corvane
