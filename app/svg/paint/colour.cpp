#include "app/svg/paint/colour.h"

#include "app/artwork/geometry/arithmetic.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::int64_t one = fixedOne;

/// How much of the gray in a colour black ink takes over from the other inks.
constexpr Fixed blackPart = fixedOne / 4 * 3;

std::int64_t limited(std::int64_t amount) {
    return std::clamp<std::int64_t>(amount, 0, one);
}

std::uint8_t byteOf(std::int64_t level) {
    return static_cast<std::uint8_t>((limited(level) * 255 + one / 2) >> 16);
}

std::int64_t levelOf(std::uint8_t byte) {
    return (std::int64_t{byte} * one * 2 + 255) / 510;
}

/// PDF Reference, 6.2.4: each ink and black together take away the light of one primary.
ScreenColour printed(const Fixed (&ink)[4]) {
    const auto level = [&](int i) { return byteOf(one - limited(ink[i]) - limited(ink[3])); };
    return {level(0), level(1), level(2)};
}

} // namespace

ScreenColour screenColour(const Colour& colour) {
    if (colour.kind == ColourKind::gray) {
        const std::uint8_t level = byteOf(one - colour.component[0]);
        return {level, level, level};
    }
    if (colour.origin == ColourOrigin::fromRgb) {
        const LightLevels levels = lightLevels(colour);
        return {byteOf(levels.red), byteOf(levels.green), byteOf(levels.blue)};
    }
    return printed(colour.component);
}

Colour plainColour(ScreenColour screen) {
    if (screen.red == screen.green && screen.green == screen.blue) {
        Colour gray;
        gray.component[0] = static_cast<Fixed>(one - levelOf(screen.red));
        return gray;
    }
    return processColour({levelOf(screen.red), levelOf(screen.green), levelOf(screen.blue)});
}

Colour processColour(LightLevels levels) {
    const std::int64_t ink[3] = {one - levels.red, one - levels.green, one - levels.blue};
    const std::int64_t gray = std::min({one, ink[0], ink[1], ink[2]});
    const std::int64_t removed = answer::fixedMultiply(saturate(gray), blackPart);
    Colour process;
    process.kind = ColourKind::process;
    process.origin = ColourOrigin::fromRgb;
    for (int i = 0; i < 3; ++i) {
        process.component[i] = static_cast<Fixed>(limited(ink[i] - removed));
    }
    process.component[3] = static_cast<Fixed>(limited(removed));
    return process;
}

Colour standIn(const SpotColour& spot, Fixed tint) {
    Colour process;
    process.kind = ColourKind::process;
    std::ranges::transform(spot.process, process.component, [&](Fixed amount) {
        return answer::fixedMultiply(amount, saturate(one - tint));
    });
    return process;
}

} // namespace corvane
