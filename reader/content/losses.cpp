#include "reader/content/losses.h"

#include "host/pen.h"
#include "reader/content/interpreter.h"
#include "reader/paint/colour_space.h"
#include "reader/paint/ink.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>

namespace corvane {

namespace {

bool isNamed(const Object& object, std::initializer_list<std::string_view> names) {
    return typeObject(object) == ObjectType::literal &&
           std::ranges::find(names, literalObject(object)) != names.end();
}

bool isNumber(const Object& object) {
    return typeObject(object) == ObjectType::integer || typeObject(object) == ObjectType::fixed;
}

bool isSeeThrough(const Object& opacity) {
    return isNumber(opacity) && extendObject(opacity) < fixedOne;
}

/// Of several modes, a reader takes the first that it knows.
bool isBlended(DocumentCache& cache, const Object& mode) {
    if (typeObject(mode) == ObjectType::array && sizeObject(mode) > 0) {
        const ObjectOwner first = resolveObject(cache, elementsObject(mode)[0]);
        return !isNamed(first.get(), {"Normal", "Compatible"});
    }
    return typeObject(mode) == ObjectType::literal && !isNamed(mode, {"Normal", "Compatible"});
}

/// Whether it is another than the one that a page begins with.
bool isOtherIntent(const Object& intent) {
    return typeObject(intent) == ObjectType::literal && !isNamed(intent, {"RelativeColorimetric"});
}

/// An entry of an external graphics state that artwork cannot hold, and which of its values count.
struct Setting {
    std::string_view key;
    Omission omission;
    bool (*counts)(DocumentCache& cache, const Object& value);
};

constexpr auto isLessThanOpaque = [](DocumentCache&, const Object& value) {
    return isSeeThrough(value);
};
constexpr auto isMask = [](DocumentCache&, const Object& value) {
    return typeObject(value) == ObjectType::dictionary;
};
constexpr auto isOn = [](DocumentCache&, const Object& value) {
    return typeObject(value) == ObjectType::boolean && booleanObject(value);
};

constexpr auto isOtherOutput = [](DocumentCache&, const Object& value) {
    return !isNamed(value, {"Default", "Identity"});
};

constexpr std::array settings = {
    Setting{"RI", Omission::renderingIntent,
            [](DocumentCache&, const Object& value) { return isOtherIntent(value); }},
    Setting{"ca", Omission::transparency, isLessThanOpaque},
    Setting{"CA", Omission::transparency, isLessThanOpaque},
    Setting{"BM", Omission::transparency, isBlended},
    Setting{"SMask", Omission::softMask, isMask},
    Setting{"OP", Omission::overprint, isOn},
    Setting{"op", Omission::overprint, isOn},
    Setting{"TR", Omission::deviceSetting, isOtherOutput},
    Setting{"TR2", Omission::deviceSetting, isOtherOutput},
    Setting{"HT", Omission::deviceSetting, isOtherOutput},
    Setting{"BG", Omission::deviceSetting, isOtherOutput},
    Setting{"BG2", Omission::deviceSetting, isOtherOutput},
    Setting{"UCR", Omission::deviceSetting, isOtherOutput},
    Setting{"UCR2", Omission::deviceSetting, isOtherOutput},
};
static_assert(settings.size() <= 16);

constexpr std::uint16_t settingBit(std::size_t index) {
    return static_cast<std::uint16_t>(1U << index);
}

constexpr std::size_t softMaskIndex = 4;
static_assert(settings[softMaskIndex].key == "SMask");

/// The entries that become a `Transparency`.
constexpr std::size_t transparencyFirst = 1;
constexpr std::size_t transparencyEnd = softMaskIndex + 1;
static_assert(settings[transparencyFirst].key == "ca");

constexpr bool isTransparency(std::size_t index) {
    return index >= transparencyFirst && index < transparencyEnd;
}

} // namespace

std::uint16_t withoutTransparency(std::uint16_t settings) {
    constexpr auto held =
        static_cast<std::uint16_t>(settingBit(transparencyEnd) - settingBit(transparencyFirst));
    return static_cast<std::uint16_t>(settings & ~held);
}

const std::uint16_t softMaskSetting = settingBit(softMaskIndex);

void noteStateLosses(Interpreter& interpreter, const Object& entries) {
    std::array<bool, omissionKinds> lost{};
    std::uint16_t inForce = interpreter.state.settings;
    for (std::size_t i = 0; i < settings.size(); ++i) {
        const Setting& setting = settings[i];
        const ObjectOwner value = lookupObject(interpreter.cache, entries, setting.key);
        if (typeObject(value.get()) == ObjectType::null) {
            continue;
        }
        inForce = static_cast<std::uint16_t>(inForce & ~settingBit(i));
        if (setting.counts(interpreter.cache, value.get())) {
            inForce = static_cast<std::uint16_t>(inForce | settingBit(i));
            const bool isHeld =
                (interpreter.readsTransparency && isTransparency(i)) ||
                (interpreter.readsPens && setting.omission == Omission::overprint) ||
                (interpreter.readsIntents && setting.omission == Omission::renderingIntent);
            bool& isLost = lost[static_cast<std::size_t>(setting.omission)];
            isLost = isLost || !isHeld;
        }
    }
    interpreter.state.settings = inForce;
    for (std::size_t i = 0; i < lost.size(); ++i) {
        if (lost[i]) {
            interpreter.omissions.note(static_cast<Omission>(i));
        }
    }
}

void noteIntentLoss(Interpreter& interpreter, const Object& intent) {
    if (isOtherIntent(intent) && !interpreter.readsIntents) {
        interpreter.omissions.note(Omission::renderingIntent);
    }
}

void noteSpaceLosses(Interpreter& interpreter, const ColourSpace& space) {
    bool hasProfile = false;
    bool hasInk = false;
    for (const ColourSpace* each = &space; each != nullptr; each = each->base.get()) {
        hasProfile = hasProfile || each->hasProfile;
        hasInk = hasInk || each->kind == ColourSpace::Kind::tint;
    }
    if (hasProfile) {
        interpreter.omissions.note(Omission::colourProfile);
    }
    if (hasInk) {
        interpreter.omissions.note(Omission::ink);
    }
}

void noteDefaultSpaces(Interpreter& interpreter) {
    for (const ColourSpacePointer& space : interpreter.colourSpaces.defaults().inForce().spaces) {
        if (space != nullptr && !holdsInk(interpreter, *space)) {
            noteSpaceLosses(interpreter, *space);
        }
    }
}

void noteIgnoredDefaults(Interpreter& interpreter) {
    DocumentCache& cache = interpreter.cache;
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return;
    }
    // Spaces that cannot be read are the concern of who names them.
    attempted([&] {
        const ObjectOwner spaces = lookupObject(cache, cache.resources.get(), "ColorSpace");
        if (typeObject(spaces.get()) != ObjectType::dictionary) {
            return;
        }
        for (const std::string_view name : {"DefaultGray", "DefaultRGB", "DefaultCMYK"}) {
            if (typeObject(findEntry(cache, spaces.get(), name)) != ObjectType::null) {
                interpreter.omissions.note(Omission::colourProfile);
            }
        }
    });
}

void noteStrokeLoss(Interpreter& interpreter, const RealMatrix& m) {
    const std::optional<StretchedPen> pen = penUnder(m);
    if (!pen || (!interpreter.readsPens && pen->pen != Pen())) {
        interpreter.omissions.note(Omission::unequalStrokeScale);
    }
}

} // namespace corvane
