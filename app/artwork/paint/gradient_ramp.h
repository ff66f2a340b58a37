// The colours along a gradient, as bands of one colour each.
#pragma once

#include "app/artwork/paint/paint.h"
#include "host/artwork.h"

#include <array>
#include <vector>

namespace corvane {

/// Amounts of ink, levels of light, or black alone: as the ramp's model says. 0 to 1.
using RampColour = std::array<double, 4>;

/// A colour from `start` up to the start of the next band. The first holds before its start, too.
struct Band {
    double start = 0;
    RampColour colour{};
};

class GradientRamp {
public:
    /// Colours between stops are mixed in black if all stops are gray, in amounts of ink if all are
    /// given so, otherwise in levels of light. `light`: levels of light can be drawn. Where they
    /// cannot, the amounts of ink that RGB was made into are mixed, which comes to the same light.
    GradientRamp(const Gradient&, bool light);

    /// What is seen from `from` to `to`, 0 being the first circle or point, 1 the last: bands that
    /// begin in ascending order, as narrow as a change by 1/255 asks for but none, except at the
    /// end of a period, narrower than `leastWidth`. A period of less than two such bands is its
    /// mean.
    std::vector<Band> bands(double from, double to, double leastWidth) const;

    /// Over the whole of 0 to 1.
    RampColour mean() const;
    const RampColour& last() const { return stops_.back().colour; }

    void setColour(const DrawingProcedures&, const RampColour&) const;

private:
    enum class Model { black, ink, light };
    struct Stop {
        double offset;
        RampColour colour;
    };

    RampColour amounts(const Colour&) const;
    std::vector<Band> period(double leastWidth) const;

    Model model_ = Model::black;
    GradientSpread spread_;
    std::vector<Stop> stops_;
};

} // namespace corvane
