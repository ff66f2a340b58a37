#include "reader/page/page_content.h"

#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

namespace corvane {

std::vector<ObjectOwner> contentStreams(DocumentCache& cache) {
    std::vector<ObjectOwner> streams;
    ObjectOwner contents = lookupObject(cache, cache.page.get(), "Contents");
    switch (typeObject(contents.get())) {
    case ObjectType::null:
        return streams;
    case ObjectType::stream:
        streams.push_back(std::move(contents));
        return streams;
    case ObjectType::array:
        for (const Object& element : elementsObject(contents.get())) {
            ObjectOwner stream = resolveObject(cache, element);
            if (typeObject(stream.get()) == ObjectType::stream) {
                streams.push_back(std::move(stream));
            } else if (typeObject(stream.get()) != ObjectType::null) {
                if (!rules().missingObjectIsNull) {
                    failException(Exception::range);
                }
                raiseWarning(Warning::operatorFailed);
            }
        }
        return streams;
    default:
        failException(Exception::range);
    }
}

} // namespace corvane
