// Operators that only the extended profile knows.
#include "objects/stack.h"
#include "reader/content/appearance.h"
#include "reader/content/content_keywords.h"
#include "reader/content/content_operators.h"
#include "reader/content/losses.h"
#include "reader/paint/colour.h"
#include "reader/paint/ink.h"
#include "reader/paint/space_colour.h"
#include "runtime/exception.h"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

namespace {

/// The paint is a pattern or of a space that is not supported.
void hidePaint(Interpreter& interpreter, Paint& paint, Omission why) {
    paint.hidden = true;
    interpreter.omissions.note(why);
}

void selectSpace(Interpreter& interpreter, Paint& paint, Colour& colour) {
    const ObjectOwner name = popLiteral();
    // Hidden until the space is found: what it was before is not what the page asks for.
    paint = Paint{.hidden = true};
    paint =
        Paint{.space = interpreter.colourSpaces.find(interpreter.cache, literalObject(name.get()))};
    if (paint.space == nullptr) {
        hidePaint(interpreter, paint, Omission::colourSpace);
        return;
    }
    // Nothing is seen of what is painted in it, so nothing is lost (PDF Reference, 4.5.5).
    paint.hidden = paint.space->isUnprinted;
    if (!paint.hidden && !holdsInk(interpreter, *paint.space)) {
        noteSpaceLosses(interpreter, *paint.space);
    }
    if (paint.space->kind != ColourSpace::Kind::pattern) {
        interpreter.progress.work(costOf(*paint.space));
        colour = initialColour(*paint.space);
        selectInk(interpreter, paint, colour,
                  std::vector<double>(static_cast<std::size_t>(paint.space->components), 1.0));
    }
}

/// The device space that colours of so many components are of, while no space was chosen.
Colour deviceColour(const std::vector<double>& components) {
    const auto kind = components.size() == 4   ? ColourSpace::Kind::cmyk
                      : components.size() == 3 ? ColourSpace::Kind::rgb
                                               : ColourSpace::Kind::gray;
    return colourIn({.kind = kind}, components);
}

/// Hidden until it is there: what the paint was before is not what the page asks for.
void selectPattern(Interpreter& interpreter, Paint& paint, Colour& colour, bool isNamed) {
    paint.hidden = true;
    paint.ink.reset();
    std::optional<Colour> pattern;
    if (isNamed && interpreter.readsPatterns) {
        const ObjectOwner name = popLiteral();
        const ColourSpace* const under = paint.space ? paint.space->base.get() : nullptr;
        const Colour own = under == nullptr ? Colour()
                                            : computedColour(interpreter, *under,
                                                             popComponents(under->components));
        pattern = interpreter.patterns.find(interpreter, literalObject(name.get()), own);
    }
    if (!pattern) {
        hidePaint(interpreter, paint, Omission::pattern);
        return;
    }
    colour = *pattern;
    paint.hidden = false;
}

void selectColour(Interpreter& interpreter, Paint& paint, Colour& colour) {
    checkStack("?");
    const bool named = typeObject(indexStack(0)) == ObjectType::literal;
    if (named || (paint.space && paint.space->kind == ColourSpace::Kind::pattern)) {
        selectPattern(interpreter, paint, colour, named);
        return;
    }
    if (paint.space == nullptr && paint.hidden) {
        return;
    }
    if (paint.space) {
        takeColour(interpreter, paint, colour);
        return;
    }
    constexpr std::int32_t deviceComponents = 4;
    colour = deviceColour(popComponents(deviceComponents));
}

/// Runs an operator of lines with the value of an entry as its operand, where the dictionary has
/// one.
void applyEntry(Interpreter& interpreter, const Object& dictionary, std::string_view key,
                std::string_view operands, ContentHandler handler) {
    ObjectOwner value = lookupObject(interpreter.cache, dictionary, key);
    if (typeObject(value.get()) != ObjectType::null) {
        interpreter.level.setsLines = true;
        pushStack(value.release());
        checkStack(operands);
        handler(interpreter);
    }
}

/// The entry "D": a dash array and its phase.
void applyDash(Interpreter& interpreter, const Object& dictionary) {
    const ObjectOwner dash = lookupObject(interpreter.cache, dictionary, "D");
    if (typeObject(dash.get()) != ObjectType::array || sizeObject(dash.get()) != 2) {
        return;
    }
    interpreter.level.setsLines = true;
    for (const Object& element : elementsObject(dash.get())) {
        pushStack(resolveObject(interpreter.cache, element).release());
    }
    checkStack("ax");
    dashOperator(interpreter);
}

/// The entry "Font": a font and its size.
void applyFont(Interpreter& interpreter, const Object& dictionary) {
    const ObjectOwner font = lookupObject(interpreter.cache, dictionary, "Font");
    if (!interpreter.readsText || typeObject(font.get()) != ObjectType::array ||
        sizeObject(font.get()) != 2) {
        return;
    }
    const std::span<const Object> elements = elementsObject(font.get());
    interpreter.level.setsFont = true;
    interpreter.state.text.font = interpreter.fonts.of(interpreter.cache, elements[0]);
    interpreter.state.text.size = realNumber(resolveObject(interpreter.cache, elements[1]).get());
}

} // namespace

void fillSpaceOperator(Interpreter& interpreter) {
    selectSpace(interpreter, interpreter.state.fill, interpreter.state.style.fill);
}

void strokeSpaceOperator(Interpreter& interpreter) {
    selectSpace(interpreter, interpreter.state.stroke, interpreter.state.style.stroke);
}

void fillColourOperator(Interpreter& interpreter) {
    selectColour(interpreter, interpreter.state.fill, interpreter.state.style.fill);
}

void strokeColourOperator(Interpreter& interpreter) {
    selectColour(interpreter, interpreter.state.stroke, interpreter.state.style.stroke);
}

void externalStateOperator(Interpreter& interpreter) {
    interpreter.level.setsFont = interpreter.level.setsLines = false;
    ObjectOwner name = popLiteral();
    pushLiteral("ExtGState");
    pushStack(name.release());
    resourceOperator(interpreter.cache);
    const ObjectOwner entries(popStack());
    if (typeObject(entries.get()) != ObjectType::dictionary) {
        return;
    }
    applyEntry(interpreter, entries.get(), "LW", "x", widthOperator);
    applyEntry(interpreter, entries.get(), "LC", "x", capOperator);
    applyEntry(interpreter, entries.get(), "LJ", "x", joinOperator);
    applyEntry(interpreter, entries.get(), "ML", "x", miterOperator);
    applyDash(interpreter, entries.get());
    applyFont(interpreter, entries.get());
    noteStateLosses(interpreter, entries.get());
    applyTransparency(interpreter, entries.get());
}

void invisibleOperator(Interpreter&) {}

} // namespace corvane
