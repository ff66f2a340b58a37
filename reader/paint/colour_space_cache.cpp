#include "reader/paint/colour_space_cache.h"

#include "reader/syntax/syntax.h"

namespace corvane {

namespace {

/// Names that no resource has. The short ones of inline images, such as "G", are names of resources
/// too: those come first.
bool isReserved(std::string_view name) {
    return name == "DeviceGray" || name == "DeviceRGB" || name == "DeviceCMYK" || name == "Pattern";
}

} // namespace

ColourSpaceCache::Known
ColourSpaceCache::readOnce(const std::function<ColourSpacePointer()>& read) {
    Known known;
    known.fault = guarded([&] { known.space = read(); });
    if (known.fault != Exception::none && !isFileFault(known.fault)) {
        againException();
    }
    resetException();
    return known;
}

/// While a space is read it is none, so that one within itself ends.
ColourSpacePointer ColourSpaceCache::numbered(std::int32_t number,
                                              const std::function<ColourSpacePointer()>& read) {
    std::unordered_map<std::int32_t, Known>& spaces = spaces_[defaults_.number()].numbered;
    if (const auto known = spaces.find(number); known != spaces.end()) {
        raiseException(known->second.fault);
        return known->second.space;
    }
    spaces.emplace(number, Known());
    Known made = readOnce(read);
    spaces[number] = made;
    mixing_.add(made.space);
    raiseException(made.fault);
    return made.space;
}

ColourSpacePointer ColourSpaceCache::named(std::string_view name) const {
    ColourSpacePointer space = namedColourSpace(name);
    const bool isDevice = space != nullptr && !space->hasProfile;
    ColourSpacePointer seenBy = isDevice ? defaults_.inForce().of(space->kind) : nullptr;
    return seenBy != nullptr ? seenBy : space;
}

ColourSpacePointer ColourSpaceCache::find(DocumentCache& cache, std::string_view name) {
    if (isReserved(name) || typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return named(name);
    }
    ObjectOwner dictionary = lookupObject(cache, cache.resources.get(), "ColorSpace");
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        return named(name);
    }
    Category& category = spaces_[defaults_.number()].categories[dictionary->data];
    if (typeObject(category.dictionary.get()) == ObjectType::empty) {
        category.dictionary = std::move(dictionary);
    }
    auto known = category.spaces.find(name);
    if (known == category.spaces.end()) {
        const Object object = findEntry(cache, category.dictionary.get(), name);
        if (typeObject(object) == ObjectType::null) {
            return named(name); // not kept: a page may make up names without end
        }
        Known read = readOnce([&] { return readColourSpace(cache, object); });
        known = category.spaces.emplace(name, std::move(read)).first;
        if (typeObject(object) != ObjectType::reference) { // else `numbered` added it
            mixing_.add(known->second.space);
        }
    }
    raiseException(known->second.fault);
    return known->second.space;
}

const IccLibraryPointer& ColourSpaceCache::iccLibrary() {
    if (iccLibrary_ == nullptr) {
        iccLibrary_ = openIccLibrary();
    }
    return iccLibrary_;
}

ColourSpaceCache& colourSpacesOf(DocumentCache& cache) {
    if (cache.colourSpaces == nullptr) {
        cache.colourSpaces = std::make_shared<ColourSpaceCache>();
    }
    return *cache.colourSpaces;
}

} // namespace corvane
