// Images and other XObjects. Without a host that holds images they are read past; what is left out
// is counted, so that it can be named.
#include "filters/token/token.h"
#include "objects/referenced.h"
#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/interpreter.h"
#include "reader/form/form_drawing.h"
#include "reader/image/deliver_image.h"
#include "reader/image/drawn_images.h"
#include "reader/image/inline_image.h"
#include "reader/image/painted_stencil.h"
#include "reader/image/place_image.h"
#include "reader/layer/layered_drawing.h"
#include "runtime/exception.h"

#include <span>

namespace corvane {

namespace {

/// Whether an image becomes art: what a stencil is painted with must be known, and the host may
/// have to hold masks.
bool isArt(const Interpreter& interpreter, const Object& image) {
    if (!interpreter.readsImages || !isStencilImage(interpreter.cache, image)) {
        return interpreter.readsImages;
    }
    return !interpreter.state.fill.hidden &&
           (interpreter.readsTransparency || !paintsStencils(interpreter));
}

void drawImage(Interpreter& interpreter, const Object& entry, const Object& stream) {
    tellDrawnImage(interpreter, stream, referenced(entry).number);
    if (!isArt(interpreter, stream)) {
        interpreter.omissions.note(Omission::image);
        return;
    }
    const KnownImage image =
        interpreter.images.find(interpreter.cache, entry, stream, stencilColour(interpreter));
    placeImage(interpreter, image, interpreter.level.span.start);
}

} // namespace

void beginImageOperator(Interpreter& interpreter) {
    interpreter.level.imageStart = interpreter.level.span.start;
    interpreter.level.inlineImage = KnownImage();
}

void dataImageOperator(Interpreter& interpreter) {
    ContentLevel& level = interpreter.level;
    if (level.imageStart < 0) {
        level.imageStart = level.span.start; // data without a BI
    }
    level.inlineImage = KnownImage();
    callFilter(*interpreter.cache.input, Operation::skipSpace);
    auto& tokens = static_cast<TokenFilter&>(*interpreter.cache.input);
    const std::int64_t length = imageDataLength(interpreter);
    const ObjectOwner dictionary = imageDictionary();
    if (!isArt(interpreter, dictionary.get())) {
        skipImageData(tokens, length);
        return;
    }
    tellDrawnImage(interpreter, dictionary.get(), 0);
    ImageData data;
    skipImageData(tokens, length, &data);
    attempted([&] {
        level.inlineImage = {deliverInlineImage(interpreter.cache, dictionary.get(),
                                                std::as_bytes(std::span(data.bytes)),
                                                stencilColour(interpreter), level.isGlyph),
                             smoothnessOf(interpreter.cache, dictionary.get()),
                             isStencilImage(interpreter.cache, dictionary.get())};
        level.inlineImage.intent = intentOfImage(interpreter.cache, dictionary.get());
    });
}

void endImageOperator(Interpreter& interpreter) {
    ContentLevel& level = interpreter.level;
    level.placed = Art::null;
    if (level.imageStart >= 0) {
        placeImage(interpreter, level.inlineImage, level.imageStart);
    }
    level.imageStart = -1;
}

void doObjectOperator(Interpreter& interpreter) {
    interpreter.level.placed = Art::null;
    const ObjectOwner name = popLiteral();
    DocumentCache& cache = interpreter.cache;
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return;
    }
    const ObjectOwner category = lookupObject(cache, cache.resources.get(), "XObject");
    if (typeObject(category.get()) != ObjectType::dictionary) {
        return;
    }
    const Object entry = findEntry(cache, category.get(), literalObject(name.get()));
    const ObjectOwner object = resolveObject(cache, entry);
    if (typeObject(object.get()) != ObjectType::stream) {
        return;
    }
    const ObjectOwner subtype = lookupObject(cache, object.get(), "Subtype");
    const bool named = typeObject(subtype.get()) == ObjectType::literal;
    const std::string_view kind = named ? literalObject(subtype.get()) : std::string_view();
    withLayer(interpreter, findEntry(cache, object.get(), "OC"), [&] {
        if (kind == "Image") {
            drawImage(interpreter, entry, object.get());
        } else if (kind == "Form") {
            drawForm(interpreter, entry, object.get());
        } else {
            interpreter.omissions.note(Omission::other);
        }
    });
}

} // namespace corvane
