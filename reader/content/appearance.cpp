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

} // namespace

bool hostHoldsAppearance() {
    const auto extension = knownExtension();
    return rules().readsTransparency && extension && extension->version >= 6;
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
}

void tellAppearance(Interpreter& interpreter, Art art, PaintsUsed paints) {
    const Transparency& state = interpreter.state.transparency;
    if (state == Transparency()) {
        return;
    }
    Appearance appearance{.blend = state.blend, .mask = state.mask};
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

void tellAppearanceAsOne(Interpreter& interpreter, Art art, const Appearance& appearance) {
    if (appearance == Appearance()) {
        return;
    }
    callHost(slot::setAppearance, art, &appearance);
    interpreter.blended += appearance.blend != BlendMode::normal ? 1 : 0;
}

} // namespace corvane
