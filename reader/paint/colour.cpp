#include "reader/paint/colour.h"

#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <algorithm>

namespace corvane {

namespace {

/// Three quarters of the common part of three inks are printed in black.
constexpr Fixed blackShare = fixedOne / 4 * 3;

Fixed difference(Fixed a, Fixed b) {
    return detail::saturated(std::int64_t{a} - b);
}

} // namespace

Fixed minimumComponent(Fixed a, Fixed b, Fixed c) {
    return std::min({std::min(a, fixedOne), b, c});
}

Fixed limitedComponent(Fixed amount) {
    return std::clamp(amount, 0, fixedOne);
}

Fixed underColorRemoval(Fixed black) {
    return callHost(slot::fixedMultiply, black, blackShare);
}

Fixed blackGeneration(Fixed black) {
    return callHost(slot::fixedMultiply, black, blackShare);
}

Colour grayColour(Fixed level) {
    return {.kind = ColourKind::gray, .component = {difference(fixedOne, level), 0, 0, 0}};
}

Colour rgbColour(Fixed red, Fixed green, Fixed blue) {
    const Fixed cyan = difference(fixedOne, red);
    const Fixed magenta = difference(fixedOne, green);
    const Fixed yellow = difference(fixedOne, blue);
    const Fixed common = minimumComponent(cyan, magenta, yellow);
    const Fixed removed = underColorRemoval(common);
    return {.kind = ColourKind::process,
            .component = {limitedComponent(difference(cyan, removed)),
                          limitedComponent(difference(magenta, removed)),
                          limitedComponent(difference(yellow, removed)),
                          limitedComponent(blackGeneration(common))},
            .origin = ColourOrigin::fromRgb};
}

Colour cmykColour(Fixed cyan, Fixed magenta, Fixed yellow, Fixed black) {
    return {.kind = ColourKind::process, .component = {cyan, magenta, yellow, black}};
}

} // namespace corvane
