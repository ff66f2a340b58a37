#include "reader/page/page_identity.h"

#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <optional>

namespace corvane {

namespace {

/// A dictionary's entry that is a dictionary; an empty object where there is none.
ObjectOwner dictionaryIn(DocumentCache& cache, const ObjectOwner& dictionary,
                         std::string_view key) {
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        return {};
    }
    return lookupObject(cache, dictionary.get(), key);
}

bool isInteger(const ObjectOwner& object, std::int32_t value) {
    return typeObject(object.get()) == ObjectType::integer && integerObject(object.get()) == value;
}

/// Where the object stands that a reference names, by the cross-reference; negative: nowhere.
std::int32_t placeOf(DocumentCache& cache, std::int32_t number, std::int32_t generation) {
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    return node ? node->tag : -1;
}

std::int32_t placeOfContent(DocumentCache& cache) {
    const Object contents = findEntry(cache, cache.page.get(), "Contents");
    if (typeObject(contents) != ObjectType::reference) {
        return -1;
    }
    std::int32_t number = 0;
    std::int32_t generation = 0;
    referenceObject(contents, number, generation);
    return placeOf(cache, number, generation);
}

std::optional<std::uint64_t> eightBytes(const ObjectOwner& object) {
    if (typeObject(object.get()) != ObjectType::block) {
        return std::nullopt;
    }
    const std::span<const std::byte> bytes = blockObject(object.get());
    if (bytes.size() != sizeof(std::uint64_t)) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (const std::byte byte : bytes) {
        value = value << 8 | static_cast<std::uint64_t>(byte);
    }
    return value;
}

/// The identity that our record of the page states, if it still speaks of this page.
std::optional<std::uint64_t> recordedOrigin(DocumentCache& cache) {
    const ObjectOwner pieces = lookupObject(cache, cache.page.get(), "PieceInfo");
    const ObjectOwner ours = dictionaryIn(cache, pieces, pieceInfoName);
    const ObjectOwner record = dictionaryIn(cache, ours, "Private");
    if (typeObject(record.get()) != ObjectType::dictionary) {
        return std::nullopt;
    }
    const PageEntry& entry = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    const std::int32_t page = placeOf(cache, entry.number, entry.generation);
    const std::int32_t content = placeOfContent(cache);
    if (page < 0 || content < 0 || !isInteger(lookupObject(cache, record.get(), "Page"), page) ||
        !isInteger(lookupObject(cache, record.get(), "Content"), content)) {
        return std::nullopt;
    }
    return eightBytes(lookupObject(cache, record.get(), "Origin"));
}

} // namespace

std::uint64_t identityOfPage(DocumentCache& cache) {
    std::optional<std::uint64_t> origin;
    const Exception code = guarded([&] { origin = recordedOrigin(cache); });
    if (code != Exception::none && !isFileFault(code)) {
        againException();
    }
    resetException();
    return origin ? *origin : digestPage(cache, contentStreams(cache));
}

} // namespace corvane
