#include "reader/page/page_search.h"

#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace corvane {

namespace {

struct Candidate {
    std::int32_t number = 0;
    std::int32_t generation = 0;
    std::int32_t stream = 0; ///< the object stream that holds it; 0: it stands in the file
    std::int32_t place = 0;  ///< its offset, or its index in the stream
};

/// Every object, those of one object stream behind one another: so each stream is decoded once.
std::vector<Candidate> candidates(const DocumentCache& cache) {
    std::vector<Candidate> found;
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        const ObjectPlace place = node->place();
        const bool isInStream = place.isInStream();
        found.push_back({.number = node->number,
                         .generation = node->generation(),
                         .stream = isInStream ? place.stream() : 0,
                         .place = isInStream ? place.index() : place.offset()});
    }
    std::ranges::sort(
        found, {}, [](const Candidate& object) { return std::pair(object.stream, object.place); });
    return found;
}

bool isPage(DocumentCache& cache, const Candidate& candidate) {
    ObjectOwner reference;
    indirectObject(reference.get(), candidate.number, candidate.generation);
    ObjectOwner object;
    return tryResolveObject(cache, reference.get(), object) == Exception::none &&
           typeObject(object.get()) == ObjectType::dictionary &&
           isPageDictionary(cache, object.get());
}

} // namespace

bool isPageDictionary(DocumentCache& cache, const Object& dictionary) {
    const Object type = findEntry(cache, dictionary, "Type");
    return typeObject(type) == ObjectType::literal && literalObject(type) == "Page";
}

void searchPages(DocumentCache& cache) {
    for (const Candidate& candidate : candidates(cache)) {
        if (isPage(cache, candidate)) {
            cache.pages.push_back({candidate.number, candidate.generation, ObjectOwner()});
        }
        forgetObject(cache, candidate.number, candidate.generation);
    }
    std::ranges::sort(cache.pages, {}, &PageEntry::number);
    if (!cache.pages.empty()) {
        cache.mends.note(Mend::pages);
    }
}

} // namespace corvane
