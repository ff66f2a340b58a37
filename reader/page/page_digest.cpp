#include "reader/page/page_digest.h"

#include "reader/page/digest_feed.h"
#include "reader/syntax/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

// What stands for something that is not fed itself; no types of objects.
constexpr std::int64_t again = -1; ///< a stream that was fed before
constexpr std::int64_t unreadable = -2;
constexpr std::int64_t otherPage = -3;
constexpr std::int64_t unread = -4; ///< data past the budget

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

/// The streams that were fed, by the storage that all that name one share. A small file may name a
/// large stream again and again: each is read once.
class FedStreams {
public:
    /// The place of a stream that was fed; none for a new one, which has the next place now.
    std::optional<std::int64_t> place(const Object& stream) {
        const auto [place, isNew] =
            places_.emplace(stream.data, static_cast<std::int64_t>(places_.size()));
        return isNew ? std::nullopt : std::optional(place->second);
    }

private:
    std::map<std::uint32_t, std::int64_t> places_;
};

/// Whether it was fed before, in which case its place is fed.
bool feedAgain(DigestFeed& feed, FedStreams& fed, const Object& stream) {
    const std::optional<std::int64_t> place = fed.place(stream);
    if (place) {
        feed.number(again);
        feed.number(*place);
    }
    return place.has_value();
}

/// Whether a dictionary is a page, or a node of the tree of pages: no page is drawn from another.
bool isPage(const Object& dictionary) {
    const std::span<Object> entries = elementsObject(dictionary);
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        if (isAmong(std::array<std::string_view, 1>{"Type"}, entries[i]) &&
            isAmong(std::array<std::string_view, 2>{"Page", "Pages"}, entries[i + 1])) {
            return true;
        }
    }
    return false;
}

/// Feeds what references led to, and what those objects lead to.
class Followed {
public:
    Followed(DigestFeed& feed, DocumentCache& cache, FedStreams& fed)
        : feed_(feed), cache_(cache), fed_(fed), end_(feed.bytes() + budget::digestBytes) {}

    void root(const Object& object) { feed_.object(object, &met_); }
    void rootStream(const Object& stream) { feed_.streamEntries(cache_, stream, met_); }

    void follow() {
        for (std::size_t i = 0; i < met_.size() && feed_.bytes() < end_; ++i) {
            ObjectOwner object;
            if (tryResolveObject(cache_, met_.reference(i), object) != Exception::none) {
                feed_.number(unreadable);
            } else if (typeObject(object.get()) == ObjectType::stream) {
                stream(object.get());
                streams_.push_back(std::move(object));
            } else if (typeObject(object.get()) == ObjectType::dictionary && isPage(object.get())) {
                feed_.number(otherPage);
            } else {
                feed_.object(object.get(), &met_);
            }
        }
    }

private:
    void stream(const Object& stream) {
        feed_.streamEntries(cache_, stream, met_);
        if (feedAgain(feed_, fed_, stream)) {
            return;
        }
        if (streamLength(stream) <= end_ - feed_.bytes()) {
            feed_.data(cache_, stream);
        } else {
            feed_.number(unread);
            feed_.number(streamLength(stream));
        }
    }

    DigestFeed& feed_;
    DocumentCache& cache_;
    FedStreams& fed_;
    std::int64_t end_;
    MetObjects met_;
    std::vector<ObjectOwner> streams_; ///< kept, so that no other takes the storage of one
};

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

/// The content's data come first: all of them count, whatever their length.
void feedData(DigestFeed& feed, DocumentCache& cache, FedStreams& fed, const Object& stream) {
    if (!feedAgain(feed, fed, stream)) {
        feed.data(cache, stream);
    }
}

void feedDrawn(DigestFeed& feed, DocumentCache& cache, std::span<const ObjectOwner> streams) {
    feedPage(feed, cache.page.get(), false);
    FedStreams fed;
    for (const ObjectOwner& stream : streams) {
        feedData(feed, cache, fed, stream.get());
    }
    Followed followed(feed, cache, fed);
    for (const ObjectOwner* field :
         {&cache.mediaBox, &cache.cropBox, &cache.rotate, &cache.resources}) {
        followed.root(field->get());
    }
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
        feedDrawn(feed, cache, streams);
    }
    return feed.value();
}

std::uint64_t digestContent(DocumentCache& cache, std::span<const BaseStream> streams,
                            const Object& resources) {
    DigestFeed feed;
    FedStreams fed;
    for (const BaseStream& stream : streams) {
        feedData(feed, cache, fed, stream.stream.get());
    }
    Followed followed(feed, cache, fed);
    for (const BaseStream& stream : streams) {
        followed.rootStream(stream.stream.get());
    }
    followed.root(cache.rotate.get());
    followed.root(resources);
    followed.follow();
    return feed.value();
}

} // namespace corvane
