// Object streams: streams that hold objects (PDF Reference 1.5, 3.4.6), decoded once and kept for
// the objects that are read from them next.
//
// The cross-reference names the very stream that holds an object, so that Extends, which says what
// a stream goes on from, adds nothing.
#pragma once

#include "runtime/memory.h"

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

struct DocumentCache;

/// An object stream, decoded.
class ObjectStream {
public:
    struct Member {
        std::int32_t number = 0;
        std::int32_t start = 0; ///< of its bytes, counted from the first one of the stream
        std::int32_t end = 0;   ///< where the next one begins
    };

    /// `count` pairs of number and offset begin the bytes; the objects begin at `first`. Pairs that
    /// are missing or lead out of the bytes are left out. An impossible `first` raises `structure`.
    ObjectStream(std::string bytes, std::int32_t count, std::int32_t first);

    std::string_view bytes() const { return bytes_; }
    const std::vector<Member>& members() const { return members_; }
    /// The object `number`: the one at `index`, or another of that number where writers counted
    /// wrong. None: `structure`.
    const Member& member(std::int32_t number, std::int32_t index) const;
    /// Memory that it takes, about.
    std::int64_t weight() const { return charge_.bytes(); }

private:
    void readMembers(std::int32_t count, std::int32_t first);
    void setEnds();

    std::string bytes_;
    std::vector<Member> members_;
    std::vector<std::uint32_t> byNumber_; ///< indexes of the members; empty where they ascend
    ZoneCharge charge_;
};

using HeldObjectStream = std::shared_ptr<const ObjectStream>;

/// The object streams of a file that were used last.
class ObjectStreams {
public:
    /// The object stream `number`. Raises `structure` where that is none or stands in an object
    /// stream itself, `limit` where it is too long. A fault of the file is remembered and not tried
    /// again.
    HeldObjectStream find(DocumentCache& cache, std::int32_t number);
    void clear();

private:
    struct Held {
        std::int32_t offset = 0;
        HeldObjectStream stream; ///< null: it cannot be read
    };
    using Place = std::list<Held>::iterator;

    void keep(Held held);
    void drop(Place place);

    std::list<Held> held_; ///< the one used last first
    std::unordered_map<std::int32_t, Place> byOffset_;
    std::int64_t weight_ = 0;
};

} // namespace corvane
