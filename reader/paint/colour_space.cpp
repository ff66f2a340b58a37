// What colours of a space look like.
#include "reader/paint/colour_space.h"

#include "reader/paint/colour.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

/// CIE L*a*b* (D50) to sRGB, by way of XYZ adapted to D65 (Bradford).
Colour labColour(double lightness, double a, double b) {
    const auto decode = [](double t) {
        constexpr double knee = 6.0 / 29.0;
        return t > knee ? t * t * t : 3 * knee * knee * (t - 4.0 / 29.0);
    };
    const double m = (lightness + 16) / 116;
    const double x = 0.9642 * decode(m + a / 500);
    const double y = decode(m);
    const double z = 0.8249 * decode(m - b / 200);
    const auto encode = [](double linear) {
        const double light = std::clamp(linear, 0.0, 1.0);
        const double level =
            light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
        return fixedFromReal(level);
    };
    return rgbColour(encode(3.1339 * x - 1.6169 * y - 0.4906 * z),
                     encode(-0.9788 * x + 1.9161 * y + 0.0335 * z),
                     encode(0.0719 * x - 0.2290 * y + 1.4052 * z));
}

/// Component `index`, 0 where it is missing.
double component(std::span<const double> components, std::size_t index) {
    return index < components.size() ? components[index] : 0.0;
}

Colour indexedColour(const ColourSpace& space, double index) {
    const auto width = static_cast<std::size_t>(space.base->components);
    const std::size_t entries = width == 0 ? 0 : space.table.size() / width;
    if (entries == 0) {
        return initialColour(*space.base);
    }
    const Function::Interval places{0, static_cast<double>(entries - 1)};
    const auto entry = static_cast<std::size_t>(Function::within(places, index));
    std::vector<double> components(width);
    for (std::size_t i = 0; i < width; ++i) {
        components[i] = space.table[entry * width + i] / 255.0;
    }
    if (space.base->kind == ColourSpace::Kind::lab) {
        const double(&range)[4] = space.base->range;
        components[0] *= 100;
        components[1] = range[0] + components[1] * (range[1] - range[0]);
        components[2] = range[2] + components[2] * (range[3] - range[2]);
    }
    return colourIn(*space.base, components);
}

Colour tintColour(const ColourSpace& space, std::span<const double> tints) {
    std::array<double, functionArity> components{};
    space.function->evaluate(tints, components);
    return colourIn(*space.base, std::span(components).first(space.function->outputs()));
}

} // namespace

std::int64_t costOf(const ColourSpace& space) {
    constexpr std::int64_t plain = 10;
    constexpr std::int64_t powers = 40;
    constexpr std::int64_t throughProfile = 200;
    constexpr std::int64_t bytesPerStep = 8;
    std::int64_t steps = plain;
    for (const ColourSpace* each = &space; each != nullptr; each = each->base.get()) {
        steps += each->function == nullptr ? 0 : each->function->cost();
        steps += each->profile == nullptr ? 0 : throughProfile;
        steps += each->kind == ColourSpace::Kind::lab ? powers : 0;
        steps += std::ssize(each->inkNames) / bytesPerStep;
    }
    return steps;
}

Colour initialColour(const ColourSpace& space) {
    constexpr std::array cmykBlack = {0.0, 0.0, 0.0, 1.0};
    switch (space.kind) {
    case ColourSpace::Kind::cmyk:
        return colourIn(space, cmykBlack);
    case ColourSpace::Kind::tint:
        return colourIn(space,
                        std::vector<double>(static_cast<std::size_t>(space.components), 1.0));
    default:
        return colourIn(space, {});
    }
}

Colour colourIn(const ColourSpace& space, std::span<const double> components) {
    if (space.profile != nullptr) {
        const auto [red, green, blue] = space.profile->colour(components);
        return rgbColour(fixedFromReal(red), fixedFromReal(green), fixedFromReal(blue));
    }
    const auto value = [&](std::size_t i) { return fixedFromReal(component(components, i)); };
    switch (space.kind) {
    case ColourSpace::Kind::gray:
        return grayColour(value(0));
    case ColourSpace::Kind::rgb:
        return rgbColour(value(0), value(1), value(2));
    case ColourSpace::Kind::cmyk:
        return cmykColour(value(0), value(1), value(2), value(3));
    case ColourSpace::Kind::lab:
        return labColour(component(components, 0), component(components, 1),
                         component(components, 2));
    case ColourSpace::Kind::indexed:
        return indexedColour(space, component(components, 0));
    case ColourSpace::Kind::tint:
        return tintColour(space, components);
    case ColourSpace::Kind::pattern:
        break;
    }
    return grayColour(0);
}

} // namespace corvane
