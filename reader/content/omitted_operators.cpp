// Text and images: read past and counted, so that what is missing can be named.
#include "filters/token.h"
#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/inline_image.h"
#include "reader/content/omissions.h"

namespace corvane {

OperatorResult omittedTextOperator(DocumentCache&) {
    noteOmission(Omission::text);
    return 0;
}

OperatorResult passedTextOperator(DocumentCache&) {
    return 0;
}

OperatorResult beginImageOperator(DocumentCache&) {
    return 0;
}

OperatorResult dataImageOperator(DocumentCache& cache) {
    callFilter(*cache.input, Operation::skipSpace);
    skipImageData(static_cast<TokenFilter&>(*cache.input), imageDataLength(cache));
    noteOmission(Omission::image);
    return 0;
}

OperatorResult endImageOperator(DocumentCache&) {
    return 0;
}

OperatorResult doObjectOperator(DocumentCache& cache) {
    const ObjectOwner name = popLiteral();
    pushLiteral("XObject");
    pushLiteral(literalObject(name.get()));
    resourceOperator(cache);
    const ObjectOwner object(popStack());
    if (typeObject(object.get()) != ObjectType::stream) {
        return 0;
    }
    const ObjectOwner subtype = lookupObject(cache, object.get(), "Subtype");
    const bool named = typeObject(subtype.get()) == ObjectType::literal;
    const std::string_view kind = named ? literalObject(subtype.get()) : std::string_view();
    noteOmission(kind == "Image"  ? Omission::image
                 : kind == "Form" ? Omission::form
                                  : Omission::other);
    return 0;
}

OperatorResult charWidthOperator(DocumentCache&) {
    return 0;
}

OperatorResult cacheDeviceOperator(DocumentCache&) {
    return 0;
}

} // namespace corvane
