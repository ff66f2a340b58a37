#include "reader/epsf/image_operators.h"

#include "filters/token/token.h"
#include "objects/stack.h"
#include "reader/content/interpreter.h"
#include "reader/epsf/epsf_file.h"
#include "reader/image/inline_image.h"
#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"

#include <span>
#include <string_view>

namespace corvane::classic {

namespace {

/// Links new art to the file. What is drawn in the unit square becomes the space of the file's
/// bounding box; a share of the CTM is exact where a share of 1 would have few digits.
void placeFile(Interpreter& interpreter, const EpsfFile& file) {
    memoryException();
    const Fixed width = file.width * fixedOne;
    const Fixed height = file.height * fixedOne;
    Matrix matrix = interpreter.state.ctm;
    matrix.a = callHost(slot::fixedDivide, matrix.a, width);
    matrix.b = negateFixed(callHost(slot::fixedDivide, matrix.b, width));
    matrix.c = negateFixed(callHost(slot::fixedDivide, matrix.c, height));
    matrix.d = callHost(slot::fixedDivide, matrix.d, height);
    const Art placed = interpreter.containers.make(ArtKind::placed);
    callHost(slot::setPlacedFile, placed, &file.location);
    callHost(slot::setPlacedMatrix, placed, &matrix);
}

std::string_view nameIn(DocumentCache& cache, const Object& dictionary, std::string_view key,
                        ObjectOwner& owner) {
    owner = lookupObject(cache, dictionary, key);
    return typeObject(owner.get()) == ObjectType::literal ? literalObject(owner.get())
                                                          : std::string_view();
}

/// The XObject of that name, a stream that says its name and what it is.
ObjectOwner externalCache(DocumentCache& cache, std::string_view name) {
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        failException(Exception::structure);
    }
    const ObjectOwner category = lookupObject(cache, cache.resources.get(), "XObject");
    if (typeObject(category.get()) == ObjectType::null) {
        failException(Exception::structure);
    }
    if (typeObject(category.get()) != ObjectType::dictionary) {
        failException(Exception::range);
    }
    ObjectOwner object = lookupObject(cache, category.get(), name);
    if (typeObject(object.get()) == ObjectType::null) {
        failException(Exception::structure);
    }
    if (typeObject(object.get()) != ObjectType::stream) {
        failException(Exception::range);
    }
    ObjectOwner type;
    ObjectOwner ownName;
    if (nameIn(cache, object.get(), "Type", type) != "XObject" ||
        nameIn(cache, object.get(), "Name", ownName) != name) {
        failException(Exception::structure);
    }
    return object;
}

/// The image whose entries are on the operand stack, and whose data follow.
EpsfFile internalCache(Interpreter& interpreter, TokenFilter& tokens) {
    const std::int64_t length = imageDataLength(interpreter);
    const ObjectOwner dictionary = imageDictionary();
    ImageData data;
    skipImageData(tokens, length, &data);
    return writeEpsf(interpreter.cache, interpreter.epsfFolder, dictionary.get(),
                     std::as_bytes(std::span(data.bytes)), interpreter.state.style.fill);
}

} // namespace

void beginImageOperator(Interpreter& interpreter) {
    interpreter.level.imageStart = interpreter.level.span.start;
    interpreter.level.inlineFile = EpsfFile();
}

void dataImageOperator(Interpreter& interpreter) {
    ContentLevel& level = interpreter.level;
    level.inlineFile = EpsfFile();
    callFilter(*interpreter.cache.input, Operation::skipSpace);
    if (level.imageStart < 0) {
        failException(Exception::mark);
    }
    level.inlineFile =
        internalCache(interpreter, static_cast<TokenFilter&>(*interpreter.cache.input));
}

void endImageOperator(Interpreter& interpreter) {
    ContentLevel& level = interpreter.level;
    level.imageStart = -1;
    if (level.inlineFile.width != 0) {
        placeFile(interpreter, level.inlineFile);
    }
    level.inlineFile = EpsfFile();
}

void doObjectOperator(Interpreter& interpreter) {
    const ObjectOwner name = popLiteral();
    const ObjectOwner object = externalCache(interpreter.cache, literalObject(name.get()));
    ObjectOwner owner;
    const std::string_view subtype = nameIn(interpreter.cache, object.get(), "Subtype", owner);
    if (subtype != "Image") {
        interpreter.omissions.note(subtype == "Form" ? Omission::form : Omission::other);
        return;
    }
    placeFile(interpreter, writeEpsf(interpreter.cache, interpreter.epsfFolder, object.get(),
                                     std::nullopt, interpreter.state.style.fill));
}

} // namespace corvane::classic
