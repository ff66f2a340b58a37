#include "writer/paint/gradient_text.h"

#include "host/light.h"
#include "output/number_text.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

namespace {

/// Periods of a gradient that repeats: finer ones are not seen on a page.
constexpr double mostPeriods = 2048;

void addNumber(std::string& text, double value) {
    constexpr double digits = 1e9;
    const double rounded = std::round(value * digits) / digits;
    std::array<char, realRoom> number{};
    text.append(number.data(), writeReal(number.data(), rounded + 0.0));
    text += ' ';
}

template <class Numbers>
std::string arrayOf(const Numbers& numbers) {
    std::string text = "[ ";
    for (const double number : numbers) {
        addNumber(text, number);
    }
    return text + "]";
}

/// Whether nothing but the last colour is seen: the ends are one point, or the circle is none.
bool isFlat(const GradientFacts& gradient) {
    if (!inverse(gradient.matrix) || gradient.stops.size() == 1) {
        return true;
    }
    return gradient.isRadial ? gradient.r2 == 0
                             : gradient.x1 == gradient.x2 && gradient.y1 == gradient.y2;
}

bool differs(const GradientStop& a, const GradientStop& b) {
    return a.colour != b.colour || a.opacity != b.opacity;
}

/// Whether the gradient is cut off at an end: a stop without opacity beside the last that has some.
bool isCut(std::span<const GradientStop> stops, bool atStart) {
    if (stops.size() < 3) {
        return false;
    }
    const GradientStop& end = atStart ? stops.front() : stops.back();
    const GradientStop& next = atStart ? stops[1] : stops[stops.size() - 2];
    return end.opacity == 0 && next.opacity == 1 && end.offset == next.offset &&
           end.offset == (atStart ? 0 : 1);
}

using Space = ColourSpace::Kind;

Space spaceOf(std::span<const GradientStop> stops) {
    const auto all = [&](auto is) { return std::ranges::all_of(stops, is, &GradientStop::colour); };
    return all([](const Colour& c) { return c.kind == ColourKind::gray; }) ? Space::gray
           : all([](const Colour& c) {
                 return c.kind == ColourKind::process && c.origin == ColourOrigin::given;
             })
               ? Space::cmyk
               : Space::rgb;
}

std::vector<double> componentsOf(const Colour& colour, Space space) {
    const auto limited = [](std::int64_t value) {
        return static_cast<double>(std::clamp<std::int64_t>(value, 0, fixedOne)) / fixedOne;
    };
    switch (space) {
    case Space::gray:
        return {limited(std::int64_t{fixedOne} - colour.component[0])};
    case Space::cmyk:
        return {limited(colour.component[0]), limited(colour.component[1]),
                limited(colour.component[2]), limited(colour.component[3])};
    default:
        break;
    }
    if (colour.kind == ColourKind::gray) {
        return std::vector<double>(3, limited(std::int64_t{fixedOne} - colour.component[0]));
    }
    const LightLevels light = lightLevels(colour);
    return {limited(light.red), limited(light.green), limited(light.blue)};
}

using Components = std::vector<double>;

std::string rampText(const Components& from, const Components& to) {
    return "<< /FunctionType 2 /Domain [ 0 1 ] /N 1 /C0 " + arrayOf(from) + " /C1 " + arrayOf(to) +
           " >> ";
}

/// A stitching function over [low, high]; `encode` has two numbers for each piece.
std::string stitched(double low, double high, std::span<const std::string> pieces,
                     std::span<const double> bounds, std::span<const double> encode) {
    std::string text =
        "<< /FunctionType 3 /Domain " + arrayOf(std::array{low, high}) + " /Functions [ ";
    for (const std::string& piece : pieces) {
        text += piece;
    }
    return text + "] /Bounds " + arrayOf(bounds) + " /Encode " + arrayOf(encode) + " >> ";
}

class GradientText {
public:
    GradientText(const GradientFacts& gradient, StopPart part, const Box& area,
                 FunctionHolder& functions)
        : gradient_(gradient), part_(part), functions_(functions), isFlat_(isFlat(gradient)),
          stops_(isFlat_ ? gradient.stops.last(1) : gradient.stops),
          space_(part == StopPart::opacity ? Space::gray : spaceOf(stops_)) {
        isCutAtStart_ = gradient.spread == GradientSpread::pad && isCut(stops_, true);
        isCutAtEnd_ = gradient.spread == GradientSpread::pad && isCut(stops_, false);
        stops_ = stops_.subspan(isCutAtStart_ ? 1 : 0);
        stops_ = stops_.first(stops_.size() - (isCutAtEnd_ ? 1 : 0));
        partCircles();
        settleRange(area);
    }

    std::string text() {
        std::string text = gradient_.isRadial && !isFlat_ ? "/ShadingType 3" : "/ShadingType 2";
        text += " /ColorSpace ";
        text += functions_.spaceText(space_);
        text += " /Coords " + coordinates() + " /Domain " + arrayOf(std::array{from_, to_}) +
                " /Extend [ ";
        text += isCutAtStart_ ? "false " : "true ";
        text += isCutAtEnd_ ? "false ]\r/Function " : "true ]\r/Function ";
        return text + function();
    }

private:
    Components valueOf(const GradientStop& stop) const {
        return part_ == StopPart::opacity ? Components{stop.opacity}
                                          : componentsOf(stop.colour, space_);
    }

    /// Between circles that touch there is a point that all of them go through, and nothing beyond
    /// it; SVG paints there.
    void partCircles() {
        const double dx = gradient_.x2 - gradient_.x1;
        const double dy = gradient_.y2 - gradient_.y1;
        const double distance = std::hypot(dx, dy);
        const double room = gradient_.r2 - gradient_.r1;
        constexpr double touching = 1e-6;
        constexpr double share = 511.0 / 512;
        if (gradient_.isRadial && room > 0 && distance > share * room &&
            distance <= room * (1 + touching)) {
            const double kept = share * room / distance;
            gradient_.x1 = gradient_.x2 - kept * dx;
            gradient_.y1 = gradient_.y2 - kept * dy;
        }
    }

    /// Places on the way between the ends, at which the area's corners lie, in the gradient's
    /// terms.
    std::vector<double> placesOf(const Box& area) const {
        std::vector<double> places;
        const std::optional<RealMatrix> back = inverse(gradient_.matrix);
        for (const RealPoint& corner :
             {RealPoint{area.left, area.bottom}, RealPoint{area.right, area.bottom},
              RealPoint{area.left, area.top}, RealPoint{area.right, area.top}}) {
            const double place = placeOf(transform(*back, corner));
            if (std::isfinite(place)) {
                places.push_back(place);
            }
        }
        return places;
    }

    double placeOf(RealPoint p) const {
        const double dx = gradient_.x2 - gradient_.x1;
        const double dy = gradient_.y2 - gradient_.y1;
        const double px = p.x - gradient_.x1;
        const double py = p.y - gradient_.y1;
        if (!gradient_.isRadial) {
            return (px * dx + py * dy) / (dx * dx + dy * dy);
        }
        const double dr = gradient_.r2 - gradient_.r1;
        if (const double away = std::hypot(dx, dy) - dr; away > 0) {
            // Of circles that are in a cone, the last that reaches as near as the point.
            return (std::hypot(px, py) + gradient_.r1) / away;
        }
        // The circle of that place goes through the point; the first lies within the last.
        const double a = dx * dx + dy * dy - dr * dr;
        const double b = px * dx + py * dy + gradient_.r1 * dr;
        const double c = px * px + py * py - gradient_.r1 * gradient_.r1;
        const double root = std::sqrt(std::max(0.0, b * b - a * c));
        return std::max((b + root) / a, (b - root) / a);
    }

    void settleRange(const Box& area) {
        if (isFlat_) {
            return;
        }
        if (gradient_.spread == GradientSpread::pad) {
            // What is seen beyond an end may differ from what is seen at it.
            first_ = !isCutAtStart_ && startsOtherwise() ? -1 : 0;
            last_ = !isCutAtEnd_ && endsOtherwise() ? 2 : 1;
        } else if (!gradient_.isRadial || gradient_.r2 > gradient_.r1) {
            for (const double place : placesOf(area)) {
                first_ = std::min(first_, std::max(std::floor(place), -mostPeriods / 2));
                last_ = std::max(last_, std::min(std::ceil(place), mostPeriods / 2));
            }
            if (gradient_.isRadial) {
                first_ = 0;
            }
        }
        from_ = first_;
        to_ = last_;
        if (gradient_.isRadial && gradient_.r2 > gradient_.r1) {
            // Circles become points there.
            const double least = -gradient_.r1 / (gradient_.r2 - gradient_.r1);
            if (gradient_.spread != GradientSpread::pad) {
                first_ = std::max(std::floor(least), -mostPeriods / 2);
            }
            from_ = std::max(first_, least);
        }
    }

    bool startsOtherwise() const {
        return stops_.size() > 1 && stops_[1].offset == 0 && differs(stops_[0], stops_[1]);
    }
    bool endsOtherwise() const {
        const std::size_t count = stops_.size();
        return count > 1 && stops_[count - 2].offset == 1 &&
               differs(stops_[count - 1], stops_[count - 2]);
    }

    std::string coordinates() const {
        if (isFlat_) {
            return "[ 0 0 1 0 ]";
        }
        const auto between = [](double a, double b, double share) { return a + share * (b - a); };
        std::vector<double> numbers;
        for (const double place : {from_, to_}) {
            numbers.push_back(between(gradient_.x1, gradient_.x2, place));
            numbers.push_back(between(gradient_.y1, gradient_.y2, place));
            if (gradient_.isRadial) {
                numbers.push_back(std::max(0.0, between(gradient_.r1, gradient_.r2, place)));
            }
        }
        return arrayOf(numbers);
    }

    /// Of one period, from 0 to 1.
    std::string period() const {
        std::vector<std::string> pieces;
        std::vector<double> bounds;
        std::vector<double> encode;
        double reached = 0;
        const auto add = [&](double end, const GradientStop& from, const GradientStop& to) {
            if (!(end > reached)) {
                return;
            }
            if (!pieces.empty()) {
                bounds.push_back(reached);
            }
            pieces.push_back(rampText(valueOf(from), valueOf(to)));
            encode.insert(encode.end(), {0.0, 1.0});
            reached = end;
        };
        add(stops_.front().offset, stops_.front(), stops_.front());
        for (std::size_t i = 1; i < stops_.size(); ++i) {
            add(stops_[i].offset, stops_[i - 1], stops_[i]);
        }
        add(1, stops_.back(), stops_.back());
        return pieces.size() == 1 ? pieces.front() : stitched(0, 1, pieces, bounds, encode);
    }

    std::string function() {
        std::string inner = period();
        if (first_ == 0 && last_ == 1) {
            return inner;
        }
        const bool isPad = gradient_.spread == GradientSpread::pad;
        if (!isPad) {
            inner = std::to_string(functions_.hold(std::move(inner))) + " 0 R ";
        }
        std::vector<std::string> pieces;
        std::vector<double> bounds;
        std::vector<double> encode;
        for (double place = first_; place < last_; ++place) {
            const bool isTurned =
                gradient_.spread == GradientSpread::reflect && std::fmod(std::abs(place), 2) == 1;
            const GradientStop& end = place < 0 ? stops_.front() : stops_.back();
            pieces.push_back(isPad && place != 0 ? rampText(valueOf(end), valueOf(end)) : inner);
            encode.insert(encode.end(), {isTurned ? 1.0 : 0.0, isTurned ? 0.0 : 1.0});
            if (place != first_) {
                bounds.push_back(place);
            }
        }
        return stitched(first_, last_, pieces, bounds, encode);
    }

    GradientFacts gradient_;
    StopPart part_;
    FunctionHolder& functions_;
    bool isFlat_;
    std::span<const GradientStop> stops_;
    Space space_;
    bool isCutAtStart_ = false;
    bool isCutAtEnd_ = false;
    double first_ = 0; ///< whole periods that the function has
    double last_ = 1;
    double from_ = 0; ///< what the shading shows of them
    double to_ = 1;
};

} // namespace

bool hasOpacity(const GradientFacts& gradient) {
    std::span<const GradientStop> stops = gradient.stops;
    if (isFlat(gradient)) {
        return stops.back().opacity != 1;
    }
    if (gradient.spread == GradientSpread::pad) {
        const bool isCutAtEnd = isCut(stops, false);
        stops = stops.subspan(isCut(stops, true) ? 1 : 0);
        stops = stops.first(stops.size() - (isCutAtEnd ? 1 : 0));
    }
    return std::ranges::any_of(stops, [](const GradientStop& stop) { return stop.opacity != 1; });
}

std::string shadingText(const GradientFacts& gradient, StopPart part, const Box& area,
                        FunctionHolder& functions) {
    return GradientText(gradient, part, area, functions).text();
}

RealMatrix shadingSpace(const GradientFacts& gradient) {
    return inverse(gradient.matrix) ? gradient.matrix : RealMatrix();
}

} // namespace corvane
