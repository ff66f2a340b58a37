#include "reader/page/page_identity.h"

#include "reader/page/page_content.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <array>
#include <vector>

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

/// Where the object stands that a reference names, by the cross-reference.
std::optional<ObjectPlace> placeOf(DocumentCache& cache, std::int32_t number,
                                   std::int32_t generation) {
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    return node ? std::optional(node->place()) : std::nullopt;
}

std::optional<ObjectPlace> placeOfContent(DocumentCache& cache) {
    const Object contents = findEntry(cache, cache.page.get(), "Contents");
    if (typeObject(contents) != ObjectType::reference) {
        return std::nullopt;
    }
    std::int32_t number = 0;
    std::int32_t generation = 0;
    referenceObject(contents, number, generation);
    return placeOf(cache, number, generation);
}

/// Whether an entry of our record states this place: an offset, since what we save stands in the
/// file itself.
bool isStated(DocumentCache& cache, const Object& record, std::string_view key,
              std::optional<ObjectPlace> place) {
    const ObjectOwner stated = lookupObject(cache, record, key);
    return place && typeObject(stated.get()) == ObjectType::integer &&
           *place == ObjectPlace::atOffset(integerObject(stated.get()));
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
std::optional<PageOrigin> statedOrigin(DocumentCache& cache) {
    const ObjectOwner pieces = lookupObject(cache, cache.page.get(), "PieceInfo");
    const ObjectOwner ours = dictionaryIn(cache, pieces, pieceInfoName);
    const ObjectOwner record = dictionaryIn(cache, ours, "Private");
    if (typeObject(record.get()) != ObjectType::dictionary) {
        return std::nullopt;
    }
    const PageEntry& entry = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    if (!isStated(cache, record.get(), "Page", placeOf(cache, entry.number, entry.generation)) ||
        !isStated(cache, record.get(), "Content", placeOfContent(cache))) {
        return std::nullopt;
    }
    const std::optional<std::uint64_t> origin =
        eightBytes(lookupObject(cache, record.get(), "Origin"));
    if (!origin) {
        return std::nullopt;
    }
    const ObjectOwner version = lookupObject(cache, record.get(), "Version");
    return PageOrigin{.digest = *origin,
                      .version = typeObject(version.get()) == ObjectType::integer
                                     ? static_cast<DigestVersion>(integerObject(version.get()))
                                     : DigestVersion::page};
}

/// The same; a damaged record states nothing.
std::optional<PageOrigin> recordedOrigin(DocumentCache& cache) {
    std::optional<PageOrigin> origin;
    return attempted([&] { origin = statedOrigin(cache); }) ? origin : std::nullopt;
}

} // namespace

PageOrigin identityOfPage(DocumentCache& cache) {
    const std::optional<PageOrigin> recorded = recordedOrigin(cache);
    return recorded ? *recorded : PageOrigin{.digest = digestPage(cache, contentStreams(cache))};
}

std::optional<PageOrigin> identityAs(DocumentCache& cache, std::uint64_t opened) {
    if (const std::optional<PageOrigin> recorded = recordedOrigin(cache)) {
        return recorded->digest == opened ? recorded : std::nullopt;
    }
    const std::vector<ObjectOwner> streams = contentStreams(cache);
    for (const DigestVersion version : std::array{DigestVersion::drawn, DigestVersion::page}) {
        if (digestPage(cache, streams, version) == opened) {
            return PageOrigin{.digest = opened, .version = version};
        }
    }
    return std::nullopt;
}

} // namespace corvane
