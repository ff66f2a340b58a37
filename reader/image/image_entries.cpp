#include "reader/image/image_entries.h"

#include "reader/syntax/real_numbers.h"
#include "reader/syntax/syntax.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

namespace corvane {

namespace {

/// Numbers of an array that count: a pair for each of 32 components.
constexpr std::size_t mostNumbers = 64;

} // namespace

Object ImageEntries::raw(ImageKey key) const {
    const Object value = findEntry(cache_, object_, key.full);
    const bool isMissing = typeObject(value) == ObjectType::null;
    const bool takesShortKeys = isInline_ || !rules().readsImages;
    return takesShortKeys && isMissing && !key.abbreviated.empty()
               ? findEntry(cache_, object_, key.abbreviated)
               : value;
}

ObjectOwner ImageEntries::find(ImageKey key) const {
    return resolveObject(cache_, raw(key));
}

std::optional<std::int32_t> ImageEntries::integer(ImageKey key) const {
    const ObjectOwner value = find(key);
    if (typeObject(value.get()) == ObjectType::integer) {
        return integerObject(value.get());
    }
    if (typeObject(value.get()) == ObjectType::fixed) {
        return fixed2long(fixedObject(value.get()));
    }
    return std::nullopt;
}

bool ImageEntries::boolean(ImageKey key) const {
    const ObjectOwner value = find(key);
    return typeObject(value.get()) == ObjectType::boolean && booleanObject(value.get());
}

std::vector<double> ImageEntries::numbers(ImageKey key) const {
    return realNumbers(cache_, find(key).get(), mostNumbers);
}

} // namespace corvane
