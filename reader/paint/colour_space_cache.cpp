#include "reader/paint/colour_space_cache.h"

#include "reader/syntax/syntax.h"

namespace corvane {

ColourSpacePointer ColourSpaceCache::find(DocumentCache& cache, std::string_view name) {
    if (ColourSpacePointer space = namedColourSpace(name)) {
        return space;
    }
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return nullptr;
    }
    ObjectOwner dictionary = lookupObject(cache, cache.resources.get(), "ColorSpace");
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        return nullptr;
    }
    Category& category = categories_[dictionary->data];
    if (typeObject(category.dictionary.get()) == ObjectType::empty) {
        category.dictionary = std::move(dictionary);
    }
    auto known = category.spaces.find(name);
    if (known == category.spaces.end()) {
        Known read;
        read.fault = guarded([&] {
            read.space = readColourSpace(cache, findEntry(cache, category.dictionary.get(), name));
        });
        if (read.fault != Exception::none && !isFileFault(read.fault)) {
            againException();
        }
        resetException();
        known = category.spaces.emplace(name, std::move(read)).first;
    }
    raiseException(known->second.fault);
    return known->second.space;
}

} // namespace corvane
