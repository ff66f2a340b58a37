#include "writer/art/color_works.h"

#include "host/light.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

/// The operators that set colours of a device space, for filling and for stroking.
std::string_view deviceOperator(Kind device, bool isFill) {
    return device == Kind::gray  ? (isFill ? "g\n" : "G\n")
           : device == Kind::rgb ? (isFill ? "rg\n" : "RG\n")
                                 : (isFill ? "k\n" : "K\n");
}

/// Writes a colour of a device space, whose components `add` writes.
template <class Add>
void writeDevice(Walk& walk, Kind device, bool isFill, const Add& add) {
    const std::string_view space =
        walk.paints != nullptr ? walk.paints->spaceOf(device) : std::string_view();
    if (!space.empty()) {
        walk.text.add("/");
        walk.text.add(space);
        walk.text.add(isFill ? " cs " : " CS ");
    }
    add();
    walk.text.add(space.empty() ? deviceOperator(device, isFill) : isFill ? "scn\n" : "SCN\n");
}

/// Stands where a paint is set that has no amounts.
constexpr Fixed middleGray = fixedOne / 2;

Fixed rest(Fixed amount) {
    return detail::saturated(std::int64_t{fixedOne} - amount);
}

bool isLight(const Colour& process) {
    return rules().writesRgb && process.origin == ColourOrigin::fromRgb;
}

void writeProcess(Walk& walk, const Colour& colour, bool isFill) {
    if (isLight(colour)) {
        const LightLevels levels = lightLevels(colour);
        writeDevice(walk, Kind::rgb, isFill, [&] {
            walk.text.addLevel(levels.red);
            walk.text.addLevel(levels.green);
            walk.text.addLevel(levels.blue);
        });
        return;
    }
    writeDevice(walk, Kind::cmyk, isFill, [&] {
        for (const Fixed amount : colour.component) {
            walk.text.add(amount);
        }
    });
}

void writeCustom(Walk& walk, const Colour& colour, bool isFill) {
    CustomColour custom;
    callHost(slot::getColorInfo, colour.source, &custom);
    const Fixed share = rest(colour.component[0]);
    writeDevice(walk, Kind::cmyk, isFill, [&] {
        for (const Fixed amount : custom.process) {
            walk.text.add(callHost(slot::fixedMultiply, amount, share));
        }
    });
}

void writeGray(Walk& walk, Fixed level, bool isFill) {
    writeDevice(walk, Kind::gray, isFill, [&] { walk.text.add(level); });
}

/// What a mixture of inks is seen as.
Colour seenOf(const Colour& mixture) {
    InkMixtureFacts facts;
    callHost(slot::getInkMixture, mixture.source, &facts);
    return facts.seen;
}

} // namespace

bool compareColor(const Colour& a, const Colour& b) {
    if (a.kind != b.kind) {
        return false;
    }
    switch (a.kind) {
    case ColourKind::gray:
        return a.component[0] == b.component[0];
    case ColourKind::process:
        return std::ranges::equal(a.component, b.component) && isLight(a) == isLight(b);
    case ColourKind::custom:
        return a.source == b.source && a.component[0] == b.component[0];
    case ColourKind::pattern:
    case ColourKind::gradient:
    case ColourKind::inks:
        return a.source == b.source;
    default:
        return false;
    }
}

void colorWorks(Walk& walk, const Colour& colour, bool isFill) {
    switch (colour.kind) {
    case ColourKind::gray:
        return writeGray(walk, rest(colour.component[0]), isFill);
    case ColourKind::process:
        return writeProcess(walk, colour, isFill);
    case ColourKind::custom:
        return walk.paints != nullptr ? walk.paints->set(walk, colour, isFill)
                                      : writeCustom(walk, colour, isFill);
    case ColourKind::inks:
        return walk.paints != nullptr ? walk.paints->set(walk, colour, isFill)
                                      : colorWorks(walk, seenOf(colour), isFill);
    case ColourKind::pattern:
    case ColourKind::gradient:
        return walk.paints != nullptr ? walk.paints->set(walk, colour, isFill)
                                      : writeGray(walk, middleGray, isFill);
    default:
        failException(Exception::type);
    }
}

} // namespace corvane
