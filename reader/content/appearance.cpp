#include "reader/content/appearance.h"

#include "reader/content/interpreter.h"
#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/rules.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

std::optional<BlendMode> blendModeOf(const Object& name) {
    if (typeObject(name) != ObjectType::literal) {
        return std::nullopt;
    }
    const auto* const found = std::ranges::find(blendNames, literalObject(name));
    if (found != blendNames.end()) {
        return static_cast<BlendMode>(found - blendNames.begin());
    }
    return literalObject(name) == "Compatible" ? std::optional(BlendMode::normal) : std::nullopt;
}

/// Of several modes the first that is known counts; one that nobody knows is Normal.
void applyBlendMode(Interpreter& interpreter, const Object& mode) {
    BlendMode& blend = interpreter.state.transparency.blend;
    if (typeObject(mode) == ObjectType::literal) {
        blend = blendModeOf(mode).value_or(BlendMode::normal);
    } else if (typeObject(mode) == ObjectType::array) {
        blend = BlendMode::normal;
        for (const Object& element : elementsObject(mode)) {
            const ObjectOwner name = resolveObject(interpreter.cache, element);
            if (const auto known = blendModeOf(name.get())) {
                blend = *known;
                return;
            }
        }
    }
}

/// Numbers of dictionaries are 16.16, which "0.3" is only nearly.
void applyOpacity(const Object& number, double& opacity) {
    constexpr double digits = 1e4;
    if (typeObject(number) == ObjectType::integer || typeObject(number) == ObjectType::fixed) {
        opacity = std::clamp(std::round(realNumber(number) * digits) / digits, 0.0, 1.0);
    }
}

void applyMask(Interpreter& interpreter, const Object& mask) {
    SoftMask& inForce = interpreter.state.transparency.mask;
    if (typeObject(mask) == ObjectType::dictionary) {
        inForce = interpreter.softMasks.find(interpreter, mask);
        if (inForce == SoftMask::null) {
            interpreter.omissions.note(Omission::softMask);
        }
    } else if (typeObject(mask) == ObjectType::literal) {
        inForce = SoftMask::null;
    }
}

std::optional<bool> switchOf(const Object& value) {
    return typeObject(value) == ObjectType::boolean ? std::optional(booleanObject(value))
                                                    : std::nullopt;
}

/// Without a word on fills, what is said of strokes holds for both.
void applyOverprint(Interpreter& interpreter, const Object& entries) {
    DocumentCache& cache = interpreter.cache;
    Overprint& overprint = interpreter.state.overprint;
    const std::optional<bool> strokes = switchOf(lookupObject(cache, entries, "OP").get());
    const std::optional<bool> fills = switchOf(lookupObject(cache, entries, "op").get());
    overprint.strokes = strokes.value_or(overprint.strokes);
    overprint.fills = fills ? *fills : strokes.value_or(overprint.fills);
    const ObjectOwner mode = lookupObject(cache, entries, "OPM");
    if (typeObject(mode.get()) == ObjectType::integer) {
        overprint.skipsZeros = extendObject(mode.get()) == fixedOne;
    }
}

/// As far as it counts for art of these paints.
Overprint usedOverprint(const Overprint& state, PaintsUsed paints) {
    Overprint used{.fills = state.fills && paints.fills,
                   .strokes = state.strokes && paints.strokes};
    used.skipsZeros = state.skipsZeros && (used.fills || used.strokes);
    return used;
}

bool showsThrough(const Appearance& appearance) {
    return appearance.opacity != 1 || appearance.fillOpacity != 1 ||
           appearance.strokeOpacity != 1 || appearance.blend != BlendMode::normal ||
           appearance.mask != SoftMask::null;
}

} // namespace

bool hostHoldsAppearance() {
    const auto extension = knownExtension();
    return rules().readsTransparency && extension && extension->version >= 6;
}

bool hostHoldsPens() {
    const auto extension = knownExtension();
    return rules().readsTransparency && extension && extension->version >= 7;
}

bool hostHoldsIntents() {
    const auto extension = knownExtension();
    return rules().readsTransparency && extension && extension->version >= 9;
}

RenderingIntent intentOf(const Object& name) {
    const std::string_view wanted =
        typeObject(name) == ObjectType::literal ? literalObject(name) : std::string_view();
    const auto* const found = std::ranges::find(intentNames, wanted);
    return found == intentNames.end() ? RenderingIntent::relativeColorimetric
                                      : static_cast<RenderingIntent>(found - intentNames.begin());
}

void applyTransparency(Interpreter& interpreter, const Object& entries) {
    if (!interpreter.readsTransparency) {
        return;
    }
    DocumentCache& cache = interpreter.cache;
    Transparency& transparency = interpreter.state.transparency;
    applyOpacity(lookupObject(cache, entries, "ca").get(), transparency.fillOpacity);
    applyOpacity(lookupObject(cache, entries, "CA").get(), transparency.strokeOpacity);
    applyBlendMode(interpreter, lookupObject(cache, entries, "BM").get());
    applyMask(interpreter, lookupObject(cache, entries, "SMask").get());
    if (interpreter.readsPens) {
        applyOverprint(interpreter, entries);
    }
    if (interpreter.readsIntents) {
        const ObjectOwner intent = lookupObject(cache, entries, "RI");
        if (typeObject(intent.get()) == ObjectType::literal) {
            interpreter.state.intent = intentOf(intent.get());
        }
    }
}

void tellAppearance(Interpreter& interpreter, Art art, PaintsUsed paints) {
    const Transparency& state = interpreter.state.transparency;
    const Overprint& overprint = interpreter.state.overprint;
    const RenderingIntent intent = interpreter.state.intent;
    if (state == Transparency() && overprint == Overprint() &&
        intent == RenderingIntent::relativeColorimetric) {
        return;
    }
    Appearance appearance{.blend = state.blend,
                          .mask = state.mask,
                          .overprint = usedOverprint(overprint, paints),
                          .intent = intent};
    if (paints.fills && paints.strokes && state.fillOpacity == state.strokeOpacity) {
        // Readers paint both, and then lay them over what is behind as one thing.
        appearance.opacity = state.fillOpacity;
    } else {
        appearance.fillOpacity = paints.fills ? state.fillOpacity : 1;
        appearance.strokeOpacity = paints.strokes ? state.strokeOpacity : 1;
    }
    tellAppearanceAsOne(interpreter, art, appearance);
}

Appearance appearanceAsOne(const Transparency& state) {
    return {.opacity = state.fillOpacity, .blend = state.blend, .mask = state.mask};
}

Appearance imageAppearance(const GraphicsState& state) {
    Appearance appearance = appearanceAsOne(state.transparency);
    appearance.intent = state.intent;
    return appearance;
}

void tellAppearanceAsOne(Interpreter& interpreter, Art art, const Appearance& appearance) {
    if (appearance == Appearance()) {
        return;
    }
    callHost(slot::setAppearance, art, &appearance);
    interpreter.seenThrough += showsThrough(appearance) ? 1 : 0;
    interpreter.blended += appearance.blend != BlendMode::normal ? 1 : 0;
}

} // namespace corvane
