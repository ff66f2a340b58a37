#include "app/artwork/paint/gradient_ramp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace corvane {

namespace {

constexpr double levels = 255;

/// Farther off, single periods are no longer told apart.
constexpr double mostPeriods = 1 << 30;

double amountOf(Fixed number) {
    return std::clamp(static_cast<double>(number) / fixedOne, 0.0, 1.0);
}

Fixed fixedAmount(double amount) {
    return static_cast<Fixed>(std::lround(std::clamp(amount, 0.0, 1.0) * fixedOne));
}

RampColour mix(const RampColour& from, const RampColour& to, double share) {
    RampColour mixed;
    for (std::size_t i = 0; i < mixed.size(); ++i) {
        mixed[i] = from[i] + (to[i] - from[i]) * share;
    }
    return mixed;
}

double difference(const RampColour& left, const RampColour& right) {
    double largest = 0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        largest = std::max(largest, std::abs(left[i] - right[i]));
    }
    return largest;
}

/// Bands that are just wide enough but for rounding stay.
constexpr double almost = 0.999;

/// Appends a band; one that begins too close behind the last takes its place.
void append(std::vector<Band>& bands, double start, const RampColour& colour, double leastWidth) {
    if (!bands.empty() && start < bands.back().start + leastWidth * almost) {
        bands.back().colour = colour;
    } else if (bands.empty() || bands.back().colour != colour) {
        bands.push_back({start, colour});
    }
}

} // namespace

GradientRamp::GradientRamp(const Gradient& gradient, bool light) : spread_(gradient.spread) {
    const auto all = [&](auto holds) {
        return std::ranges::all_of(gradient.stops, holds, &GradientStop::colour);
    };
    if (!all([](const Colour& colour) { return colour.kind == ColourKind::gray; })) {
        const bool given = all([](const Colour& colour) {
            return colour.kind == ColourKind::process && colour.origin == ColourOrigin::given;
        });
        model_ = given || !light ? Model::ink : Model::light;
    }
    stops_.reserve(gradient.stops.size());
    for (const GradientStop& stop : gradient.stops) {
        stops_.push_back({stop.offset, amounts(stop.colour)});
    }
}

RampColour GradientRamp::amounts(const Colour& colour) const {
    const bool gray = colour.kind == ColourKind::gray;
    const double black = amountOf(colour.component[gray ? 0 : 3]);
    if (model_ == Model::black) {
        return {black};
    }
    RampColour amounts{};
    amounts[3] = model_ == Model::ink ? black : 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double ink = gray ? 0 : amountOf(colour.component[i]);
        amounts[i] = model_ == Model::ink ? ink : 1 - std::min(1.0, ink + black);
    }
    return amounts;
}

RampColour GradientRamp::mean() const {
    RampColour sum{};
    double reached = 0;
    const Stop* before = &stops_.front();
    for (const Stop& stop : stops_) {
        const RampColour middle = mix(before->colour, stop.colour, 0.5);
        for (std::size_t i = 0; i < sum.size(); ++i) {
            sum[i] += middle[i] * (stop.offset - reached);
        }
        reached = stop.offset;
        before = &stop;
    }
    for (std::size_t i = 0; i < sum.size(); ++i) {
        sum[i] += last()[i] * (1 - reached);
    }
    return sum;
}

/// The bands of 0 to 1.
std::vector<Band> GradientRamp::period(double leastWidth) const {
    std::vector<Band> bands{{0, stops_.front().colour}};
    for (std::size_t i = 1; i < stops_.size(); ++i) {
        const Stop& from = stops_[i - 1];
        const Stop& to = stops_[i];
        const double width = to.offset - from.offset;
        if (width <= 0) {
            continue;
        }
        const double wanted = std::ceil(difference(from.colour, to.colour) * levels);
        const double count =
            std::clamp(std::min(wanted, std::floor(width / leastWidth)), 1.0, levels);
        for (int band = 0; band < static_cast<int>(count); ++band) {
            append(bands, from.offset + width * band / count,
                   mix(from.colour, to.colour, (band + 0.5) / count), leastWidth);
        }
    }
    append(bands, stops_.back().offset, last(), leastWidth);
    return bands;
}

std::vector<Band> GradientRamp::bands(double from, double to, double leastWidth) const {
    const bool countable = from >= -mostPeriods && to <= mostPeriods;
    if (spread_ != GradientSpread::pad && (leastWidth > 0.5 || !countable)) {
        return {{from, mean()}};
    }
    const std::vector<Band> forward = period(leastWidth);
    std::vector<Band> seen;
    const auto add = [&](double start, const RampColour& colour) {
        if (start >= to && !seen.empty()) {
            return;
        }
        if (!seen.empty() && start <= from) {
            seen.clear();
        }
        seen.push_back({start, colour});
    };
    if (spread_ == GradientSpread::pad) {
        add(-std::numeric_limits<double>::infinity(), stops_.front().colour);
        for (const Band& band : forward) {
            add(band.start, band.colour);
        }
        return seen;
    }
    const auto first = static_cast<std::int64_t>(std::floor(from));
    for (std::int64_t at = first; static_cast<double>(at) < to || seen.empty(); ++at) {
        const auto turn = static_cast<double>(at);
        const bool back = spread_ == GradientSpread::reflect && at % 2 != 0;
        for (std::size_t i = 0; i < forward.size(); ++i) {
            if (!back) {
                add(turn + forward[i].start, forward[i].colour);
                continue;
            }
            const std::size_t band = forward.size() - 1 - i;
            const double end = band + 1 < forward.size() ? forward[band + 1].start : 1;
            add(turn + 1 - end, forward[band].colour);
        }
    }
    return seen;
}

void GradientRamp::setColour(const DrawingProcedures& draw, const RampColour& colour) const {
    switch (model_) {
    case Model::black:
        draw.setGray(fixedAmount(1 - colour[0]));
        return;
    case Model::ink:
        draw.setCMYK(fixedAmount(colour[0]), fixedAmount(colour[1]), fixedAmount(colour[2]),
                     fixedAmount(colour[3]));
        return;
    case Model::light:
        draw.setRGB(fixedAmount(colour[0]), fixedAmount(colour[1]), fixedAmount(colour[2]));
        return;
    }
}

} // namespace corvane
