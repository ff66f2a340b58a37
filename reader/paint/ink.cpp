#include "reader/paint/ink.h"

#include "host/light.h"
#include "reader/content/interpreter.h"
#include "reader/font/characters.h"
#include "reader/paint/colour.h"
#include "reader/paint/seen_colour.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <cstdlib>
#include <span>

namespace corvane {

namespace {

/// Amounts of ink that look like the colour, and of which parts look like parts of its light.
void takeProcess(const Colour& full, std::span<Fixed, 4> process) {
    if (full.kind == ColourKind::gray) {
        process[3] = limitedComponent(full.component[0]);
    } else if (full.origin == ColourOrigin::fromRgb) {
        const LightLevels light = lightLevels(full);
        std::ranges::transform(std::array{light.red, light.green, light.blue}, process.begin(),
                               [](std::int64_t level) {
                                   return static_cast<Fixed>(
                                       std::clamp<std::int64_t>(fixedOne - level, 0, fixedOne));
                               });
    } else {
        std::ranges::transform(full.component, process.begin(), limitedComponent);
    }
}

Colour tinted(const CustomColour& ink, double tint) {
    const auto part = [&](int i) { return fixedFromReal(realFromFixed(ink.process[i]) * tint); };
    return cmykColour(part(0), part(1), part(2), part(3));
}

bool looksAlike(SeenColour a, SeenColour b) {
    constexpr int room = 1;
    return std::abs(a.red - b.red) <= room && std::abs(a.green - b.green) <= room &&
           std::abs(a.blue - b.blue) <= room;
}

} // namespace

std::optional<CustomColour> inkOf(std::string_view name, const ColourSpace& tint) {
    CustomColour ink;
    const std::optional<std::u32string> letters = fromUtf8(name);
    if (!letters || !isText(*letters) || name == "All" || name == "None" ||
        name.size() >= std::size(ink.name) || tint.base->hasProfile) {
        return std::nullopt;
    }
    ink.name[0] = static_cast<std::uint8_t>(name.size());
    std::ranges::copy(name, ink.name + 1);
    const double all = 1;
    takeProcess(colourIn(tint, {&all, 1}), ink.process);
    constexpr int steps = 8;
    for (int step = 0; step <= steps; ++step) {
        const double amount = step / double{steps};
        if (!looksAlike(seenColour(colourIn(tint, {&amount, 1})),
                        seenColour(tinted(ink, amount)))) {
            return std::nullopt;
        }
    }
    return ink;
}

bool holdsInk(const Interpreter& interpreter, const ColourSpace& space) {
    return interpreter.readsPens && space.ink.has_value();
}

void selectInk(Interpreter& interpreter, Paint& paint, double tint) {
    if (!holdsInk(interpreter, *paint.space)) {
        return;
    }
    PaintSource& source = interpreter.inks[paint.space];
    if (source == PaintSource::null) {
        callHost(slot::addCustomColour, &*paint.space->ink, &source);
    }
    paint.ink = Colour{.kind = ColourKind::custom,
                       .component = {fixedFromReal(1 - std::clamp(tint, 0.0, 1.0)), 0, 0, 0},
                       .source = source};
}

} // namespace corvane
