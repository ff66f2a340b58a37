#include "reader/shading/gradient_stops.h"

#include "host/light.h"
#include "runtime/budget.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace corvane {

namespace {

/// Tokens that a stop counts as: it takes as much room as thirty segments of a path, here and in
/// SVG.
constexpr std::int64_t stopTokens = 100;

using Levels = std::array<double, 3>; ///< of light, 0 to 255

Levels levelsOf(const Colour& colour) {
    const LightLevels light = colour.kind == ColourKind::gray
                                  ? LightLevels{fixedOne - std::int64_t{colour.component[0]},
                                                fixedOne - std::int64_t{colour.component[0]},
                                                fixedOne - std::int64_t{colour.component[0]}}
                                  : lightLevels(colour);
    const auto level = [](std::int64_t value) {
        return std::clamp(static_cast<double>(value) / fixedOne, 0.0, 1.0) * 255;
    };
    return {level(light.red), level(light.green), level(light.blue)};
}

struct Sample {
    double place = 0; ///< 0 to 1
    Colour colour;
    Levels levels{};
};

/// How far a sample is from the straight line between two others, in levels.
double distance(const Sample& from, const Sample& middle, const Sample& to) {
    const double length = to.place - from.place;
    const double share = length > 0 ? (middle.place - from.place) / length : 0;
    double most = 0;
    for (std::size_t i = 0; i < from.levels.size(); ++i) {
        const double expected = from.levels[i] + share * (to.levels[i] - from.levels[i]);
        most = std::max(most, std::abs(middle.levels[i] - expected));
    }
    return most;
}

class Sampler {
public:
    Sampler(ContentProgress& progress, const Shading& shading, double room)
        : progress_(progress), shading_(shading), cost_(shading.cost()), room_(room) {}

    /// Nothing where more stops are needed than the budget has.
    bool run(std::span<const double> breaks) {
        for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
            // What a function says in front of a jump holds up to it.
            const Sample from = sampleAt(breaks[i], breaks[i]);
            const Sample to = sampleAt(
                breaks[i + 1],
                i + 2 == breaks.size() ? breaks[i + 1] : std::nextafter(breaks[i + 1], breaks[i]));
            if (!add(from) || !refine(from, to, 0) || !add(to)) {
                return false;
            }
        }
        return true;
    }

    std::vector<GradientStop> stops() const {
        std::vector<GradientStop> stops;
        for (const Sample& sample : samples_) {
            stops.push_back({.offset = sample.place, .colour = sample.colour});
        }
        return stops;
    }

private:
    /// Steps of this kind halve the way between two stops: the last one is a jump to the eye.
    static constexpr int deepest = 12;

    /// The colour that the functions have at `value`, to stand at `place`; both 0 to 1.
    Sample sampleAt(double place, double value) {
        progress_.work(cost_);
        const double first = shading_.domain[0];
        const double input = first + value * (shading_.domain[1] - first);
        Sample sample{.place = place, .colour = shading_.colourAt(std::span(&input, 1))};
        sample.levels = levelsOf(sample.colour);
        return sample;
    }

    bool add(const Sample& sample) {
        const std::size_t count = samples_.size();
        if (count > 0 && samples_[count - 1].place == sample.place &&
            samples_[count - 1].colour == sample.colour) {
            return true;
        }
        samples_.push_back(sample);
        return samples_.size() <= budget::gradientStops;
    }

    bool refine(const Sample& from, const Sample& to, int depth) {
        const auto at = [&](double share) {
            const double place = from.place + share * (to.place - from.place);
            return sampleAt(place, place);
        };
        const Sample middle = at(.5);
        if (depth == deepest ||
            (distance(from, middle, to) <= room_ && distance(from, at(.25), to) <= room_ &&
             distance(from, at(.75), to) <= room_ && distance(from, at(.1), to) <= room_)) {
            return true;
        }
        return refine(from, middle, depth + 1) && add(middle) && refine(middle, to, depth + 1);
    }

    ContentProgress& progress_;
    const Shading& shading_;
    std::int64_t cost_; ///< of one colour
    double room_;
    std::vector<Sample> samples_;
};

/// Where the functions may bend or jump, 0 to 1, ascending, both ends included.
std::vector<double> breaksOf(const Shading& shading) {
    const double first = shading.domain[0];
    const double last = shading.domain[1];
    std::vector<double> breaks;
    for (const FunctionPointer& function : shading.functions) {
        function->addBreaks(std::min(first, last), std::max(first, last), breaks);
    }
    for (double& place : breaks) {
        place = (place - first) / (last - first);
    }
    std::erase_if(breaks, [](double place) { return !(place > 0 && place < 1); });
    // Each has two stops, and so have the ends.
    if (breaks.size() > budget::gradientStops / 2 - 2) {
        breaks.clear(); // halving finds the ones that are seen
    }
    breaks.push_back(0);
    breaks.push_back(1);
    std::ranges::sort(breaks);
    breaks.erase(std::unique(breaks.begin(), breaks.end()), breaks.end());
    return breaks;
}

} // namespace

std::vector<GradientStop> gradientStops(ContentProgress& progress, const Shading& shading) {
    const double first = shading.domain[0];
    const double last = shading.domain[1];
    if (first == last) {
        return {{.offset = 0, .colour = shading.colourAt(std::span(&first, 1))}};
    }
    const std::vector<double> breaks = breaksOf(shading);
    constexpr double finest = .75; // colours are rounded to levels besides
    for (double room = finest;; room *= 2) {
        Sampler sampler(progress, shading, room);
        if (sampler.run(breaks)) {
            std::vector<GradientStop> stops = sampler.stops();
            progress.charge(stopTokens * std::ssize(stops));
            return stops;
        }
    }
}

} // namespace corvane
