#include "reader/paint/ink.h"

#include "host/inks.h"
#include "host/light.h"
#include "reader/content/interpreter.h"
#include "reader/font/characters.h"
#include "reader/paint/colour.h"
#include "reader/paint/seen_colour.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

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

bool hostHoldsInkMixtures() {
    const auto extension = knownExtension();
    return rules().profile == Profile::extended && extension && extension->version >= 10;
}

bool holdsInk(const Interpreter& interpreter, const ColourSpace& space) {
    return (interpreter.readsPens && space.ink) ||
           (interpreter.readsInkMixtures && !space.inkNames.empty());
}

namespace {

Colour customColour(Interpreter& interpreter, const ColourSpacePointer& space, double tint) {
    PaintSource& source = interpreter.inks[space];
    if (source == PaintSource::null) {
        callHost(slot::addCustomColour, &*space->ink, &source);
    }
    return {.kind = ColourKind::custom,
            .component = {fixedFromReal(1 - std::clamp(tint, 0.0, 1.0)), 0, 0, 0},
            .source = source};
}

/// None where the page has more of them than artwork is to hold.
std::optional<Colour> mixtureOf(Interpreter& interpreter, const ColourSpacePointer& space,
                                const Colour& seen, std::span<const double> tints) {
    std::vector<Fixed> amounts(static_cast<std::size_t>(space->components));
    std::ranges::transform(tints.first(std::min(tints.size(), amounts.size())), amounts.begin(),
                           [](double tint) { return fixedFromReal(std::clamp(tint, 0.0, 1.0)); });
    InkMixtures& mixtures = interpreter.inkMixtures;
    std::pair key{space, std::move(amounts)};
    auto mixture = mixtures.known.find(key);
    if (mixture == mixtures.known.end()) {
        constexpr std::int64_t besides = 256;
        mixtures.bytes += besides + std::ssize(space->inkNames) +
                          std::ssize(key.second) * std::int64_t{sizeof(Fixed)};
        if (mixtures.bytes > budget::inkMixtureBytes) {
            return std::nullopt;
        }
        const InkMixtureFacts facts{.names = space->inkNames, .tints = key.second, .seen = seen};
        PaintSource source = PaintSource::null;
        callHost(slot::addInkMixture, &facts, &source);
        mixture = mixtures.known.emplace(std::move(key), source).first;
    }
    return Colour{.kind = ColourKind::inks, .component = {}, .source = mixture->second};
}

} // namespace

void selectInk(Interpreter& interpreter, Paint& paint, const Colour& seen,
               std::span<const double> tints) {
    paint.ink.reset();
    if (!holdsInk(interpreter, *paint.space)) {
        return;
    }
    if (paint.space->ink) {
        paint.ink = customColour(interpreter, paint.space, tints.empty() ? 0 : tints.front());
        return;
    }
    paint.ink = mixtureOf(interpreter, paint.space, seen, tints);
    if (!paint.ink) {
        interpreter.omissions.note(Omission::ink);
    }
}

} // namespace corvane
