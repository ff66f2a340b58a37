#include "app/svg/colour.h"

#include "app/artwork/arithmetic.h"

#include <algorithm>
#include <array>

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

/// sRGB of cyan, magenta and yellow inks printed over one another in full, as coated stock shows
/// them: bit 0 cyan, bit 1 magenta, bit 2 yellow.
constexpr std::array<std::array<std::int64_t, 3>, 8> overprints{{
    {255, 255, 255},
    {0, 174, 239},
    {236, 0, 140},
    {46, 49, 146},
    {255, 242, 0},
    {0, 166, 81},
    {237, 28, 36},
    {54, 54, 57},
}};

/// What full black ink lets through of the colour under it.
constexpr std::array<std::int64_t, 3> black{35, 31, 32};

/// Dots of the inks fall on one another by chance (Demichel), so the area of each overprint is the
/// product of the amounts, and its colour counts by its area (Neugebauer). Black darkens the rest.
ScreenColour printed(const Fixed (&ink)[4]) {
    std::array<std::int64_t, 3> light{}; // 255 << 16 is white
    for (std::size_t corner = 0; corner < overprints.size(); ++corner) {
        std::int64_t area = one;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::int64_t amount = limited(ink[i]);
            area = (area * ((corner >> i & 1) != 0 ? amount : one - amount)) >> 16;
        }
        for (std::size_t i = 0; i < 3; ++i) {
            light[i] += area * overprints[corner][i];
        }
    }
    const std::int64_t amount = limited(ink[3]);
    std::array<std::uint8_t, 3> bytes{};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::int64_t through = 255 * (one - amount) + black[i] * amount; // 255 << 16 is all
        bytes[i] =
            static_cast<std::uint8_t>(((light[i] >> 8) * (through >> 8) / 255 + one / 2) >> 16);
    }
    return {bytes[0], bytes[1], bytes[2]};
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

LightLevels lightLevels(const Colour& process) {
    const auto level = [&](int ink) {
        return one - std::min(one, std::int64_t{process.component[ink]} + process.component[3]);
    };
    return {level(0), level(1), level(2)};
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

} // namespace corvane
