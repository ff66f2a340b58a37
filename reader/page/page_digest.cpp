#include "reader/page/page_digest.h"

#include "reader/page/followed_digest.h"
#include "reader/syntax/syntax.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// What a program notes for itself is no part of the page, and changes with every save.
constexpr std::array<std::string_view, 2> noteKeys = {"PieceInfo", "LastModified"};

/// What is followed to all that it leads to. The resources may be inherited.
constexpr std::array<std::string_view, 3> followedKeys = {"Resources", "Group", "Contents"};

bool isAmong(std::span<const std::string_view> keys, const Object& key) {
    return typeObject(key) == ObjectType::literal &&
           std::ranges::find(keys, literalObject(key)) != keys.end();
}

void feedPage(DigestFeed& feed, const Object& page, bool withFollowed) {
    const std::span<Object> entries = elementsObject(page);
    std::vector<Object> fed;
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        if (!isAmong(noteKeys, entries[i]) &&
            (withFollowed || !isAmong(followedKeys, entries[i]))) {
            fed.insert(fed.end(), {entries[i], entries[i + 1]});
        }
    }
    feed.entries(std::move(fed));
}

void feedFirstVersion(DigestFeed& feed, DocumentCache& cache,
                      std::span<const ObjectOwner> streams) {
    feedPage(feed, cache.page.get(), true);
    for (const ObjectOwner* field :
         {&cache.mediaBox, &cache.cropBox, &cache.rotate, &cache.resources}) {
        feed.object(field->get());
    }
    FedStreams fed;
    for (const ObjectOwner& stream : streams) {
        if (!feedAgain(feed, fed, stream.get())) {
            feed.object(elementsObject(stream.get())[0]);
            feed.data(cache, stream.get());
        }
    }
}

bool readsLayers(DigestVersion version) {
    return version == DigestVersion::page || version == DigestVersion::drawn;
}

/// Resources that are the page itself count by what content finds in them: a save changes the rest
/// of the page.
void rootResources(Followed& followed, DocumentCache& cache, const Object& resources) {
    if (typeObject(resources) != ObjectType::dictionary ||
        typeObject(findEntry(cache, resources, "Resources")) == ObjectType::null) {
        return followed.root(resources);
    }
    for (const char* key :
         {"ColorSpace", "ExtGState", "Font", "Pattern", "Properties", "Shading", "XObject"}) {
        followed.root(findEntry(cache, resources, key));
    }
}

/// The content's data come first: all of them count, whatever their length.
void feedData(DigestFeed& feed, DocumentCache& cache, FedStreams& fed, const Object& stream) {
    if (!feedAgain(feed, fed, stream)) {
        feed.data(cache, stream);
    }
}

void feedDrawn(DigestFeed& feed, DocumentCache& cache, std::span<const ObjectOwner> streams,
               DigestVersion version) {
    feedPage(feed, cache.page.get(), false);
    FedStreams fed;
    for (const ObjectOwner& stream : streams) {
        feedData(feed, cache, fed, stream.get());
    }
    Followed followed(feed, cache, fed, readsLayers(version));
    for (const ObjectOwner* field : {&cache.mediaBox, &cache.cropBox, &cache.rotate}) {
        followed.root(field->get());
    }
    rootResources(followed, cache, cache.resources.get());
    for (const char* key : {"Group", "Contents"}) {
        followed.root(findEntry(cache, cache.page.get(), key));
    }
    followed.follow();
}

} // namespace

std::uint64_t digestPage(DocumentCache& cache, std::span<const ObjectOwner> streams,
                         DigestVersion version) {
    DigestFeed feed;
    if (version == DigestVersion::page) {
        feedFirstVersion(feed, cache, streams);
    } else {
        feedDrawn(feed, cache, streams, version);
    }
    return feed.value();
}

std::uint64_t digestContent(DocumentCache& cache, std::span<const BaseStream> streams,
                            const Object& resources, DigestVersion version) {
    DigestFeed feed;
    FedStreams fed;
    for (const BaseStream& stream : streams) {
        feedData(feed, cache, fed, stream.stream.get());
    }
    Followed followed(feed, cache, fed, readsLayers(version));
    for (const BaseStream& stream : streams) {
        followed.rootStream(stream.stream.get());
    }
    followed.root(cache.rotate.get());
    rootResources(followed, cache, resources);
    followed.follow();
    return feed.value();
}

} // namespace corvane
