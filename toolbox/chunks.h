// Address space for the zone: one reserved range, given out in runs of 64 KiB chunks.
//
// Nothing is committed before it is first given out. Free runs that touch are one run, and the one
// at the end of what is in use goes back to the untouched part, so any request that fits between
// two blocks can be met. Chunk 0 is never given out: offset 0 is the null address.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace corvane {

struct ChunkRun {
    std::uint32_t first = 0;
    std::uint32_t count = 0; ///< 0: none
    bool clean = false;      ///< never used: all bytes are 0
};

class ChunkPool {
public:
    static constexpr std::uint32_t shift = 16;
    static constexpr std::uint32_t chunkSize = 1U << shift;

    /// Reserves room for `bytes`; where the process may not have that much, half of it, and so on
    /// down to 64 MiB (or to less, where less was asked for). Throws `std::bad_alloc` where even
    /// that is refused.
    explicit ChunkPool(std::int64_t bytes);
    ~ChunkPool();
    ChunkPool(const ChunkPool&) = delete;
    ChunkPool& operator=(const ChunkPool&) = delete;

    std::byte* base() const { return base_; }

    /// Bytes asked for, or the smaller number that could be reserved.
    std::int64_t limit() const { return limit_; }

    /// The smallest free run of at least `count` chunks, cut to `count`; count 0 where there is
    /// none.
    ChunkRun take(std::uint32_t count);
    void give(std::uint32_t first, std::uint32_t count);

    /// Makes the chunks read as 0.
    void clear(std::uint32_t first, std::uint32_t count, std::int64_t bytes);

private:
    void insertFree(std::uint32_t first, std::uint32_t count) noexcept;
    void eraseFree(std::uint32_t first, std::uint32_t count);
    bool commit(std::uint32_t end);

    std::byte* base_ = nullptr;
    std::int64_t limit_ = 0;
    std::uint32_t chunks_ = 0;    // reserved
    std::uint32_t committed_ = 0; // from chunk 0 on, readable and writable
    std::uint32_t touched_ = 1;   // chunks from here on were never given out
    std::uint32_t frontier_ = 1;  // chunks from here on are not in use and not in free_
    std::set<std::pair<std::uint32_t, std::uint32_t>> free_; // count, first
    std::vector<std::uint32_t> ends_; // of a free run: its count, at its first and last chunk
};

} // namespace corvane
