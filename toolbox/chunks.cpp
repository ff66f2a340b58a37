#include "toolbox/chunks.h"

#include "toolbox/poison.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <sys/mman.h>

namespace corvane {

namespace {

constexpr std::int64_t mebibyte = 1 << 20;
constexpr std::int64_t smallestHalving = 64 * mebibyte;

// Every size class may hold a chunk that is nearly empty; that much is reserved past the limit.
constexpr std::int64_t slack = 12 * mebibyte;

// Under a hard limit on address space the rest of the process needs some too.
constexpr std::int64_t headroom = 48 * mebibyte;

constexpr std::uint32_t commitStep = 64; // chunks
constexpr std::int64_t worthReturning = 4 * mebibyte;
constexpr std::int64_t cheaperToRemap = mebibyte;

void* reserve(std::int64_t bytes) {
    const auto size = static_cast<std::size_t>(bytes);
    void* range = mmap(nullptr, size + static_cast<std::size_t>(headroom), PROT_NONE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (range == MAP_FAILED) {
        return nullptr;
    }
    munmap(static_cast<std::byte*>(range) + size, static_cast<std::size_t>(headroom));
    return range;
}

} // namespace

ChunkPool::ChunkPool(std::int64_t bytes) {
    const std::int64_t largest = (std::int64_t{1} << 32) - slack - chunkSize;
    limit_ = std::clamp(bytes, std::int64_t{chunkSize}, largest) / chunkSize * chunkSize;
    void* range = reserve(limit_ + slack);
    while (range == nullptr && limit_ / 2 >= smallestHalving) {
        limit_ = limit_ / 2 / chunkSize * chunkSize;
        range = reserve(limit_ + slack);
    }
    if (range == nullptr) {
        throw std::bad_alloc();
    }
    base_ = static_cast<std::byte*>(range);
    chunks_ = static_cast<std::uint32_t>((limit_ + slack) >> shift);
}

ChunkPool::~ChunkPool() {
    const std::size_t size = std::size_t{chunks_} << shift;
    unpoison(base_, std::size_t{committed_} << shift);
    munmap(base_, size);
}

bool ChunkPool::commit(std::uint32_t end) {
    if (end <= committed_) {
        return true;
    }
    const std::uint32_t target =
        std::min(chunks_, (end + commitStep - 1) / commitStep * commitStep);
    // Chunk 0 stays closed: an access through a null address stops at once.
    const std::uint32_t from = std::max(committed_, 1U);
    if (mprotect(base_ + (std::size_t{from} << shift), std::size_t{target - from} << shift,
                 PROT_READ | PROT_WRITE) != 0) {
        return false;
    }
    committed_ = target;
    ends_.resize(committed_);
    return true;
}

void ChunkPool::insertFree(std::uint32_t first, std::uint32_t count) noexcept {
    try {
        free_.emplace(count, first);
    } catch (const std::bad_alloc&) {
        return; // blocks are given back by destructors: better to lose the run than to raise
    }
    ends_[first] = count;
    ends_[first + count - 1] = count;
}

void ChunkPool::eraseFree(std::uint32_t first, std::uint32_t count) {
    free_.erase({count, first});
    ends_[first] = 0;
    ends_[first + count - 1] = 0;
}

ChunkRun ChunkPool::take(std::uint32_t count) {
    if (const auto found = free_.lower_bound({count, 0}); found != free_.end()) {
        const auto [size, first] = *found;
        eraseFree(first, size);
        if (size > count) {
            insertFree(first + count, size - count);
        }
        return {first, count, false};
    }
    if (count > chunks_ - frontier_ || !commit(frontier_ + count)) {
        return {};
    }
    const std::uint32_t first = frontier_;
    frontier_ += count;
    const bool clean = first >= touched_;
    touched_ = std::max(touched_, frontier_);
    return {first, count, clean};
}

void ChunkPool::give(std::uint32_t first, std::uint32_t count) {
    const std::int64_t bytes = std::int64_t{count} << shift;
    if (bytes >= worthReturning) {
        madvise(base_ + (std::size_t{first} << shift), static_cast<std::size_t>(bytes),
                MADV_DONTNEED);
    }
    if (const std::uint32_t before = ends_[first - 1]; before != 0) {
        eraseFree(first - before, before);
        first -= before;
        count += before;
    }
    const std::uint32_t end = first + count;
    if (end == frontier_) {
        frontier_ = first;
        return;
    }
    if (const std::uint32_t after = ends_[end]; after != 0) {
        eraseFree(end, after);
        count += after;
    }
    insertFree(first, count);
}

void ChunkPool::clear(std::uint32_t first, std::uint32_t count, std::int64_t bytes) {
    std::byte* start = base_ + (std::size_t{first} << shift);
    if (bytes >= cheaperToRemap) {
        madvise(start, std::size_t{count} << shift, MADV_DONTNEED);
    } else {
        std::memset(start, 0, static_cast<std::size_t>(bytes));
    }
}

} // namespace corvane
