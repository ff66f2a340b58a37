#include "reader/syntax/file_scope.h"

#include "filters/memory_filter.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

/// Places read between two questions whether the person wants to stop.
constexpr std::int64_t placesPerCheck = 64;

} // namespace

SyntaxPlace placeOfObject(DocumentCache& cache, std::int32_t number, ObjectPlace place) {
    if (!place.isInStream()) {
        return {.start = place.offset()};
    }
    const HeldObjectStream stream = cache.objectStreams.find(cache, place.stream());
    const ObjectStream::Member& member = stream->member(number, place.index());
    return {.stream = place.stream(), .start = member.start, .end = member.end};
}

FileScope::FileScope(DocumentCache& cache, const SyntaxPlace& place)
    : cache_(cache), formerInput_(cache.input) {
    const std::int64_t known = std::int64_t{cache.fileLength} + cache.work.unpackedBytes;
    if (cache.work.readBytes > 4 * known + budget::rereadBytes) {
        failException(Exception::limit);
    }
    if (++cache.work.places % placesPerCheck == 0 && callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
    std::int32_t shift = 0;
    std::int32_t end = cache.fileLength;
    if (place.stream != 0) {
        held_ = cache.objectStreams.find(cache, place.stream);
        end = static_cast<std::int32_t>(held_->bytes().size());
        chain_.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(held_->bytes()))));
    } else {
        shift = cache.headerOffset;
        chain_ = Chain(cache.fileChain.top());
    }
    if (place.start < 0 || place.start >= end - shift) {
        failException(Exception::structure);
    }
    const std::int32_t last = std::clamp(place.end, place.start, end - shift);
    std::unique_ptr<RangeFilter> bytes =
        std::make_unique<RangeFilter>(place.start + shift, last + shift);
    bytes_ = bytes.get();
    chain_.link(std::move(bytes));
    std::unique_ptr<TokenFilter> tokens = setupToken();
    tokens_ = tokens.get();
    chain_.link(std::move(tokens));
    cache.input = tokens_;
}

FileScope::~FileScope() {
    const auto ahead = static_cast<std::int32_t>(tokens_->readAhead());
    cache_.work.readBytes += bytes_->position - bytes_->start - ahead;
    cache_.input = formerInput_;
}

} // namespace corvane
