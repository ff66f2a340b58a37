#include "reader/page/page_digest.h"

#include "reader/syntax/stream_chain.h"
#include "runtime/digest.h"

#include <algorithm>
#include <array>
#include <map>
#include <vector>

namespace corvane {

namespace {

void feedNumber(Digest& digest, std::int64_t number) {
    digest.feed(std::as_bytes(std::span(&number, 1)));
}

void feedText(Digest& digest, std::string_view text) {
    feedNumber(digest, static_cast<std::int64_t>(text.size()));
    digest.feed(std::as_bytes(std::span(text)));
}

/// The objects and all that they hold, the last first, without recursion.
void feedObjects(Digest& digest, std::vector<Object> pending) {
    while (!pending.empty()) {
        const Object object = pending.back();
        pending.pop_back();
        feedNumber(digest, static_cast<std::int64_t>(object.type));
        switch (object.type) {
        case ObjectType::literal:
            feedText(digest, literalObject(object));
            break;
        case ObjectType::text:
        case ObjectType::block: {
            const std::span<const std::byte> bytes =
                object.type == ObjectType::block ? blockObject(object)
                                                 : std::as_bytes(std::span(textObject(object)));
            feedNumber(digest, static_cast<std::int64_t>(bytes.size()));
            digest.feed(bytes);
            break;
        }
        case ObjectType::reference:
        case ObjectType::array:
        case ObjectType::procedure:
        case ObjectType::dictionary:
        case ObjectType::stream: {
            const std::span<Object> elements = elementsObject(object);
            feedNumber(digest, static_cast<std::int64_t>(elements.size()));
            pending.insert(pending.end(), elements.rbegin(), elements.rend());
            break;
        }
        default:
            feedNumber(digest, dataObject(object));
        }
    }
}

void feedObject(Digest& digest, const Object& object) {
    feedObjects(digest, {object});
}

/// What a program notes for itself is no part of the page, and changes with every save.
bool isNote(const Object& key) {
    return typeObject(key) == ObjectType::literal &&
           (literalObject(key) == "PieceInfo" || literalObject(key) == "LastModified");
}

void feedPage(Digest& digest, const Object& page) {
    const std::span<Object> entries = elementsObject(page);
    std::vector<Object> fed;
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        if (!isNote(entries[i])) {
            fed.insert(fed.end(), {entries[i], entries[i + 1]});
        }
    }
    std::ranges::reverse(fed);
    feedNumber(digest, static_cast<std::int64_t>(fed.size()));
    feedObjects(digest, std::move(fed));
}

void feedStream(Digest& digest, DocumentCache& cache, const Object& stream) {
    const std::span<Object> parts = elementsObject(stream);
    feedObject(digest, parts[0]);
    feedNumber(digest, std::int64_t{integerObject(parts[2])} - integerObject(parts[1]));
    const Chain bytes = rawStream(cache, stream);
    std::array<std::byte, 16384> buffer;
    while (const std::size_t count = readFilter(*bytes.top(), buffer)) {
        digest.feed(std::span(buffer).first(count));
    }
}

/// What stands for a stream that was fed before; no type of an object.
constexpr std::int64_t again = -1;

/// A small file may name a large stream again and again: each is read once.
void feedStreams(Digest& digest, DocumentCache& cache, std::span<const ObjectOwner> streams) {
    std::map<std::uint32_t, std::int64_t> fed; // by the storage that all that name it share
    for (const ObjectOwner& stream : streams) {
        const auto [place, isNew] =
            fed.emplace(stream.get().data, static_cast<std::int64_t>(fed.size()));
        if (isNew) {
            feedStream(digest, cache, stream.get());
        } else {
            feedNumber(digest, again);
            feedNumber(digest, place->second);
        }
    }
}

} // namespace

std::uint64_t digestPage(DocumentCache& cache, std::span<const ObjectOwner> streams) {
    Digest digest;
    feedPage(digest, cache.page.get());
    for (const ObjectOwner* field :
         {&cache.mediaBox, &cache.cropBox, &cache.rotate, &cache.resources}) {
        feedObject(digest, field->get());
    }
    feedStreams(digest, cache, streams);
    return digest.value();
}

} // namespace corvane
