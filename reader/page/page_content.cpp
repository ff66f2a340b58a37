#include "reader/page/page_content.h"

#include "objects/referenced.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <utility>

namespace corvane {

namespace {

BaseStream named(ObjectOwner stream, const Object& reference) {
    const ObjectIdentifier object = referenced(reference);
    return {.stream = std::move(stream), .number = object.number, .generation = object.generation};
}

} // namespace

std::vector<BaseStream> streamsOf(DocumentCache& cache, const Object& contents) {
    std::vector<BaseStream> streams;
    ObjectOwner resolved = resolveObject(cache, contents);
    switch (typeObject(resolved.get())) {
    case ObjectType::null:
        return streams;
    case ObjectType::stream:
        streams.push_back(named(std::move(resolved), contents));
        return streams;
    case ObjectType::array:
        for (const Object& element : elementsObject(resolved.get())) {
            ObjectOwner stream = resolveObject(cache, element);
            if (typeObject(stream.get()) == ObjectType::stream) {
                streams.push_back(named(std::move(stream), element));
            } else if (typeObject(stream.get()) != ObjectType::null) {
                if (!rules().missingObjectIsNull) {
                    failException(Exception::range);
                }
                raiseWarning(Warning::operatorFailed);
            }
        }
        return streams;
    default:
        if (!rules().mendsObjects) {
            failException(Exception::range);
        }
        raiseWarning(Warning::operatorFailed);
        return streams;
    }
}

std::vector<ObjectOwner> contentStreams(DocumentCache& cache) {
    std::vector<ObjectOwner> streams;
    for (BaseStream& stream : streamsOf(cache, findEntry(cache, cache.page.get(), "Contents"))) {
        streams.push_back(std::move(stream.stream));
    }
    return streams;
}

} // namespace corvane
