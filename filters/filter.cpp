#include "filters/filter.h"

#include "runtime/exception.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// The largest piece whose length the protocol's 32-bit count can say.
constexpr std::size_t largestPiece = 1U << 30;

} // namespace

void Filter::giveBack(std::span<const std::byte> bytes) {
    seekFilter(*this, markFilter(*this) - static_cast<std::int32_t>(bytes.size()));
}

std::int32_t callFilter(Filter& filter, Operation operation, std::byte* buffer,
                        std::int32_t* argument) {
    if (filter.entry == nullptr) {
        failException(Exception::structure);
    }
    return filter.entry(filter, operation, buffer, argument);
}

Filter* linkFilter(Filter* next, FilterOwner filter) {
    filter->next = next;
    callFilter(*filter, Operation::link);
    return filter.release();
}

Filter* unlinkFilter(Filter* filter) {
    const FilterOwner owner(filter);
    Filter* next = filter->next;
    callFilter(*owner, Operation::unlink);
    return next;
}

Filter* baseFilter(Filter* filter) {
    while (filter != nullptr && filter->next != nullptr) {
        filter = filter->next;
    }
    return filter;
}

std::size_t readFilter(Filter& filter, std::span<std::byte> buffer) {
    auto count = static_cast<std::int32_t>(std::min(buffer.size(), largestPiece));
    callFilter(filter, Operation::read, buffer.data(), &count);
    return static_cast<std::size_t>(count);
}

void writeFilter(Filter& filter, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const auto piece = static_cast<std::int32_t>(std::min(bytes.size(), largestPiece));
        std::int32_t count = piece;
        // One entry serves both directions, so its buffer is not const; a write only reads it.
        callFilter(filter, Operation::write, const_cast<std::byte*>(bytes.data()), &count);
        if (count != piece) {
            failException(Exception::io);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(piece));
    }
}

std::int32_t seekFilter(Filter& filter, std::int32_t position) {
    callFilter(filter, Operation::seek, nullptr, &position);
    return position;
}

std::int32_t markFilter(Filter& filter) {
    std::int32_t position = 0;
    callFilter(filter, Operation::mark, nullptr, &position);
    return position;
}

Chain::Chain(Chain&& other) noexcept
    : base_(other.base_), top_(std::exchange(other.top_, other.base_)) {}

Chain& Chain::operator=(Chain&& other) noexcept {
    std::swap(base_, other.base_);
    std::swap(top_, other.top_);
    return *this;
}

void Chain::link(FilterOwner filter) {
    top_ = linkFilter(top_, std::move(filter));
}

void Chain::unlink() {
    Exception first = Exception::none;
    while (top_ != base_) {
        const Exception code = guarded([&] {
            while (top_ != base_) {
                unlinkFilter(std::exchange(top_, top_->next));
            }
        });
        if (first == Exception::none) {
            first = code;
        }
    }
    raiseException(first);
}

void Chain::abandon() noexcept {
    while (top_ != base_) {
        const FilterOwner filter(std::exchange(top_, top_->next));
    }
}

} // namespace corvane
