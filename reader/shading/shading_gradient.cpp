#include "reader/shading/shading_gradient.h"

#include "reader/shading/gradient_stops.h"
#include "runtime/callbacks.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

double distanceOf(const std::array<double, 6>& circles) {
    return std::hypot(circles[3] - circles[0], circles[4] - circles[1]);
}

/// Readers paint nothing where the ends are one point or one circle (PDF Reference, 4.6.3).
bool isNothing(const Shading& shading) {
    const std::array<double, 6>& c = shading.coordinates;
    return shading.kind == ShadingKind::axial ? c[0] == c[2] && c[1] == c[3]
                                              : distanceOf(c) == 0 && c[2] == c[5];
}

/// What is seen beyond an end at which the shading does not extend.
GradientStop beyond(const Shading& shading, const GradientStop& end, bool asPattern) {
    GradientStop stop{.offset = end.offset, .colour = end.colour, .opacity = 0};
    if (asPattern && !shading.background.empty()) {
        stop.colour = colourIn(*shading.space, shading.background);
        stop.opacity = 1;
    }
    return stop;
}

void place(const Shading& shading, bool isTurned, GradientFacts& facts) {
    const std::array<double, 6>& c = shading.coordinates;
    if (shading.kind == ShadingKind::axial) {
        facts.x1 = c[0];
        facts.y1 = c[1];
        facts.x2 = c[2];
        facts.y2 = c[3];
        return;
    }
    facts.isRadial = true;
    const std::size_t first = isTurned ? 3 : 0;
    const std::size_t last = isTurned ? 0 : 3;
    facts.x1 = c[first];
    facts.y1 = c[first + 1];
    facts.r1 = std::max(0.0, c[first + 2]);
    facts.x2 = c[last];
    facts.y2 = c[last + 1];
    facts.r2 = std::max(0.0, c[last + 2]);
}

} // namespace

bool isGradient(const Shading& shading) {
    if (shading.kind == ShadingKind::axial) {
        return true;
    }
    const std::array<double, 6>& c = shading.coordinates;
    // Within the rounding of numbers circles may touch.
    constexpr double room = 1.0 / 4096;
    return shading.kind == ShadingKind::radial &&
           distanceOf(c) <= std::abs(c[5] - c[2]) * (1 + room) + room;
}

Colour gradientOf(ContentProgress& progress, const Shading& shading, const RealMatrix& matrix,
                  bool asPattern) {
    std::vector<GradientStop> stops;
    const bool isTurned =
        shading.kind == ShadingKind::radial && shading.coordinates[2] > shading.coordinates[5];
    GradientFacts facts{.matrix = withoutSignedZeros(matrix)};
    if (isNothing(shading)) {
        stops.push_back(beyond(shading, {}, asPattern));
    } else {
        place(shading, isTurned, facts);
        stops = gradientStops(progress, shading);
        bool extendsStart = shading.extendsStart;
        bool extendsEnd = shading.extendsEnd;
        if (isTurned) {
            std::ranges::reverse(stops);
            for (GradientStop& stop : stops) {
                stop.offset = 1 - stop.offset;
            }
            std::swap(extendsStart, extendsEnd);
        }
        const bool hasStart = !facts.isRadial || facts.r1 > 0;
        if (!extendsStart && hasStart) {
            stops.insert(stops.begin(), beyond(shading, stops.front(), asPattern));
        }
        if (!extendsEnd) {
            stops.back().offset = 1;
            stops.push_back(beyond(shading, stops.back(), asPattern));
        }
    }
    facts.stops = stops;
    Colour colour{.kind = ColourKind::gradient, .component = {}};
    callHost(slot::addGradient, &facts, &colour.source);
    return colour;
}

} // namespace corvane
