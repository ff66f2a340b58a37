#include "reader/paint/seen_colour.h"

#include <algorithm>

namespace corvane {

namespace {

std::int64_t limited(std::int64_t amount) {
    return std::clamp<std::int64_t>(amount, 0, fixedOne);
}

std::uint8_t levelOf(std::int64_t ink) {
    return static_cast<std::uint8_t>((limited(fixedOne - ink) * 255 + fixedOne / 2) >> 16);
}

} // namespace

SeenColour seenColour(const Colour& colour) {
    const Fixed(&ink)[4] = colour.component;
    if (colour.kind == ColourKind::gray) {
        const std::uint8_t level = levelOf(ink[0]);
        return {level, level, level};
    }
    if (colour.kind != ColourKind::process) {
        return {};
    }
    const std::int64_t black = limited(ink[3]);
    return {levelOf(limited(ink[0]) + black), levelOf(limited(ink[1]) + black),
            levelOf(limited(ink[2]) + black)};
}

} // namespace corvane
