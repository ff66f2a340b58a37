// Feeds a digest with objects, with the data of streams, and with all that they lead to by
// reference.
#pragma once

#include "reader/page/digest_feed.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace corvane {

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
bool feedAgain(DigestFeed& feed, FedStreams& fed, const Object& stream);

/// Feeds what references led to, and what those objects lead to, each once. Pages are left out, and
/// so is what layers say of themselves, unless `readsLayers`.
/// Past `budget::digestBytes` references count by themselves.
class Followed {
public:
    Followed(DigestFeed& feed, DocumentCache& cache, FedStreams& fed, bool readsLayers);

    void root(const Object& object) { feed_.object(object, &met_); }
    void rootStream(const Object& stream) { feed_.streamEntries(cache_, stream, met_); }
    /// The data of a stream; where the budget does not reach, how long they are.
    void data(const Object& stream);
    void follow();

private:
    void stream(const Object& stream);

    DigestFeed& feed_;
    DocumentCache& cache_;
    FedStreams& fed_;
    std::int64_t end_;
    bool readsLayers_;
    MetObjects met_;
    std::vector<ObjectOwner> streams_; ///< kept, so that no other takes the storage of one
};

} // namespace corvane
