#include "reader/syntax/object_stream.h"

#include "filters/memory_filter.h"
#include "filters/token/token.h"
#include "reader/document/cache.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <span>
#include <utility>

namespace corvane {

namespace {

constexpr std::size_t firstBlock = std::size_t{1} << 14;

/// Memory of one member and of its place by number.
constexpr std::int64_t memberWeight = sizeof(ObjectStream::Member) + sizeof(std::uint32_t);

/// Memory of a stream that is held, besides what is in it.
constexpr std::int64_t heldWeight = 256;

bool precedes(const ObjectStream::Member& a, const ObjectStream::Member& b) {
    return a.number < b.number;
}

std::string decodedBytes(DocumentCache& cache, const Object& stream) {
    StreamChain chain(cache, stream);
    ZoneCharge charge;
    std::string bytes;
    for (std::size_t filled = 0;;) {
        if (filled > budget::objectStreamBytes) {
            failException(Exception::limit);
        }
        const std::size_t room = std::max(firstBlock, 2 * filled);
        charge.resize(static_cast<std::int64_t>(room));
        bytes.resize(room);
        const std::size_t count =
            readFilter(chain.top(), std::as_writable_bytes(std::span(bytes)).subspan(filled));
        filled += count;
        if (filled < room) {
            bytes.resize(filled);
            bytes.shrink_to_fit();
            return bytes;
        }
    }
}

std::int32_t wholeNumber(DocumentCache& cache, const Object& stream, std::string_view key) {
    const ObjectOwner value = lookupObject(cache, stream, key);
    if (typeObject(value.get()) != ObjectType::integer || integerObject(value.get()) < 0) {
        failException(Exception::structure);
    }
    return integerObject(value.get());
}

HeldObjectStream decoded(DocumentCache& cache, const Object& stream) {
    const std::int32_t count = wholeNumber(cache, stream, "N");
    const std::int32_t first = wholeNumber(cache, stream, "First");
    std::string bytes = decodedBytes(cache, stream);
    cache.work.unpackedBytes += static_cast<std::int64_t>(bytes.size());
    return std::make_shared<const ObjectStream>(std::move(bytes), count, first);
}

std::int64_t weightOf(const HeldObjectStream& stream) {
    return stream ? stream->weight() : heldWeight;
}

} // namespace

ObjectStream::ObjectStream(std::string bytes, std::int32_t count, std::int32_t first)
    : bytes_(std::move(bytes)), charge_(static_cast<std::int64_t>(bytes_.size()) + heldWeight) {
    if (static_cast<std::size_t>(first) > bytes_.size()) {
        failException(Exception::structure);
    }
    readMembers(count, first);
    setEnds();
    if (!std::ranges::is_sorted(members_, precedes)) {
        byNumber_.resize(members_.size());
        std::iota(byNumber_.begin(), byNumber_.end(), 0U);
        std::ranges::stable_sort(byNumber_, precedes,
                                 [&](std::uint32_t index) { return members_[index]; });
    }
}

void ObjectStream::readMembers(std::int32_t count, std::int32_t first) {
    // A pair takes four bytes at least: two digits, each with a space.
    const std::int32_t most = std::min(count, first / 4 + 1);
    charge_.resize(charge_.bytes() + most * memberWeight);
    members_.reserve(static_cast<std::size_t>(most));
    const auto head = std::string_view(bytes_).substr(0, static_cast<std::size_t>(first));
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(head))));
    std::unique_ptr<TokenFilter> owned = setupToken();
    TokenFilter& tokens = *owned;
    chain.link(std::move(owned));
    for (std::int32_t i = 0; i < most; ++i) {
        if (tokens.readToken() != TokenType::integer) {
            return;
        }
        const std::int32_t number = tokens.number().integer;
        if (tokens.readToken() != TokenType::integer) {
            return;
        }
        const std::int64_t start = std::int64_t{first} + tokens.number().integer;
        const bool isInside = start >= first && start < std::ssize(bytes_);
        // An index counts pairs, so that a bad one keeps its place, under a number that none has.
        members_.push_back(isInside ? Member{number, static_cast<std::int32_t>(start), 0}
                                    : Member{-1, first, 0});
    }
}

/// Objects need not stand in the order of their pairs.
void ObjectStream::setEnds() {
    std::vector<std::int32_t> starts;
    starts.reserve(members_.size());
    for (const Member& member : members_) {
        starts.push_back(member.start);
    }
    std::ranges::sort(starts);
    for (Member& member : members_) {
        const auto next = std::ranges::upper_bound(starts, member.start);
        member.end = next == starts.end() ? static_cast<std::int32_t>(bytes_.size()) : *next;
    }
}

const ObjectStream::Member& ObjectStream::member(std::int32_t number, std::int32_t index) const {
    if (index >= 0 && index < std::ssize(members_) &&
        members_[static_cast<std::size_t>(index)].number == number) {
        return members_[static_cast<std::size_t>(index)];
    }
    const Member* found = nullptr;
    if (byNumber_.empty()) {
        const auto place = std::ranges::lower_bound(members_, number, {}, &Member::number);
        found = place == members_.end() ? nullptr : &*place;
    } else {
        const auto numberOf = [&](std::uint32_t i) { return members_[i].number; };
        const auto place = std::ranges::lower_bound(byNumber_, number, {}, numberOf);
        found = place == byNumber_.end() ? nullptr : &members_[*place];
    }
    if (found == nullptr || found->number != number) {
        failException(Exception::structure);
    }
    return *found;
}

HeldObjectStream ObjectStreams::find(DocumentCache& cache, std::int32_t number) {
    const Ref<ReferenceNode> node = findReference(*cache.references, number, 0);
    if (!node) {
        failException(Exception::structure);
    }
    // By its place: a section read alone may know another stream by this number.
    const std::int32_t offset = node->place().offset();
    HeldObjectStream found;
    if (const auto known = byOffset_.find(offset); known != byOffset_.end()) {
        held_.splice(held_.begin(), held_, known->second);
        found = held_.front().stream;
    } else {
        Object reference;
        indirectObject(reference, number, 0);
        const ObjectOwner owner(reference);
        const ObjectOwner stream = resolveObject(cache, reference);
        if (typeObject(stream.get()) == ObjectType::stream) {
            // Until it is decoded it cannot be read: not for its own filters either.
            keep({.offset = offset, .stream = nullptr});
            const Exception code = guarded([&] { found = decoded(cache, stream.get()); });
            if (code != Exception::none && !isFileFault(code)) {
                drop(byOffset_.at(offset)); // another time it may be read
            }
            if (code != Exception::none) {
                againException();
            }
            keep({.offset = offset, .stream = found});
        }
    }
    if (!found) {
        failException(Exception::structure);
    }
    return found;
}

void ObjectStreams::keep(Held held) {
    if (const auto former = byOffset_.find(held.offset); former != byOffset_.end()) {
        drop(former->second);
    }
    weight_ += weightOf(held.stream);
    held_.push_front(std::move(held));
    byOffset_.emplace(held_.front().offset, held_.begin());
    while (weight_ > budget::keptObjectStreams && held_.size() > 1) {
        drop(std::prev(held_.end()));
    }
}

void ObjectStreams::drop(Place place) {
    weight_ -= weightOf(place->stream);
    byOffset_.erase(place->offset);
    held_.erase(place);
}

void ObjectStreams::clear() {
    byOffset_.clear();
    held_.clear();
    weight_ = 0;
}

} // namespace corvane
