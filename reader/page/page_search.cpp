#include "reader/page/page_search.h"

#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace corvane {

namespace {

using Name = std::pair<std::int32_t, std::int32_t>; ///< number and generation

std::vector<Name> namesOfObjects(const DocumentCache& cache) {
    std::vector<Name> names;
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        names.emplace_back(node->number, node->generation());
    }
    std::ranges::sort(names);
    return names;
}

bool isPage(DocumentCache& cache, const Name& name) {
    ObjectOwner reference;
    indirectObject(reference.get(), name.first, name.second);
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
    for (const auto& [number, generation] : namesOfObjects(cache)) {
        if (isPage(cache, {number, generation})) {
            cache.pages.emplace_back(number, generation, ObjectOwner());
        }
        forgetObject(cache, number, generation);
    }
    if (!cache.pages.empty()) {
        cache.mends.note(Mend::pages);
    }
}

} // namespace corvane
