// Feeds a digest with objects and with the data of streams.
#pragma once

#include "reader/document/cache.h"
#include "runtime/digest.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// The indirect objects that references led to, in the order in which they were met, so that what
/// they are called does not count.
class MetObjects {
public:
    /// The place of an object in that order. None for a new one past `budget::digestObjects`.
    std::optional<std::int64_t> place(const Object& reference);

    std::size_t size() const { return references_.size(); }
    const Object& reference(std::size_t place) const { return references_[place].get(); }

private:
    std::map<std::pair<std::int32_t, std::int32_t>, std::int64_t> places_;
    std::vector<ObjectOwner> references_;
};

class DigestFeed {
public:
    void number(std::int64_t number);
    void feed(std::span<const std::byte> bytes);
    /// The object and all that it holds. References count by number and generation or, with `met`,
    /// by their place there; what is noted beside what is drawn is left out then.
    void object(const Object& object, MetObjects* met = nullptr);
    /// The dictionary of a stream as `object` feeds it, with the true Length where it says another
    /// or none: mending the file changes no page.
    void streamEntries(DocumentCache& cache, const Object& stream, MetObjects& met);
    /// Keys and values, and their number.
    void entries(std::vector<Object> entries);
    /// The length of the stream, and its data as they stand in the file.
    void data(DocumentCache& cache, const Object& stream);

    std::int64_t bytes() const { return bytes_; } ///< fed so far
    std::uint64_t value() const { return digest_.value(); }

private:
    void text(std::string_view text);
    void objects(std::vector<Object> pending, MetObjects* met);

    Digest digest_;
    std::int64_t bytes_ = 0;
};

} // namespace corvane
