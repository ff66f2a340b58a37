// Images and forms: read past and counted, so that what is missing can be named. Glyph widths,
// which fonts say as well.
#include "filters/token.h"
#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/inline_image.h"

namespace corvane {

void beginImageOperator(Interpreter&) {}

void dataImageOperator(Interpreter& interpreter) {
    callFilter(*interpreter.cache.input, Operation::skipSpace);
    skipImageData(static_cast<TokenFilter&>(*interpreter.cache.input),
                  imageDataLength(interpreter));
    interpreter.omissions.note(Omission::image);
}

void endImageOperator(Interpreter&) {}

void doObjectOperator(Interpreter& interpreter) {
    const ObjectOwner name = popLiteral();
    pushLiteral("XObject");
    pushLiteral(literalObject(name.get()));
    resourceOperator(interpreter.cache);
    const ObjectOwner object(popStack());
    if (typeObject(object.get()) != ObjectType::stream) {
        return;
    }
    const ObjectOwner subtype = lookupObject(interpreter.cache, object.get(), "Subtype");
    const bool named = typeObject(subtype.get()) == ObjectType::literal;
    const std::string_view kind = named ? literalObject(subtype.get()) : std::string_view();
    interpreter.omissions.note(kind == "Image"  ? Omission::image
                               : kind == "Form" ? Omission::form
                                                : Omission::other);
    if (typeObject(findEntry(interpreter.cache, object.get(), "OC")) != ObjectType::null) {
        interpreter.omissions.note(Omission::optionalContent);
    }
}

void charWidthOperator(Interpreter&) {}

/// The glyph is a shape, which all of is painted in the colour of text.
void cacheDeviceOperator(Interpreter& interpreter) {
    if (interpreter.level.isGlyph) {
        interpreter.level.ignoresColour = true;
        interpreter.state.style.stroke = interpreter.state.style.fill;
        interpreter.state.stroke = interpreter.state.fill;
    }
}

} // namespace corvane
