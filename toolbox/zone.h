// The zone's allocator.
//
// A block is a header of 8 bytes (length asked for, owners) and its bytes. Blocks of up to 32 KiB
// share a chunk with others of their size class; larger ones have a run of chunks to themselves. A
// freed block is the first to be given out again; a chunk whose last block is freed can serve any
// class.
#pragma once

#include "toolbox/chunks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

class Zone {
public:
    /// Throws `std::bad_alloc` where no address space is left for a zone.
    explicit Zone(std::int64_t limit);

    std::byte* base() const { return pool_.base(); }
    std::int64_t limit() const { return pool_.limit(); }

    /// Address of a zero-filled block, or 0.
    std::uint32_t allocate(std::int32_t size);

    /// Ignores 0, addresses outside the zone and blocks already freed.
    void dispose(std::uint32_t address);

    std::int32_t size(std::uint32_t address) const;
    void retain(std::uint32_t address);
    bool release(std::uint32_t address);

    bool charge(std::int64_t bytes);
    void discharge(std::int64_t bytes);
    std::int64_t charged() const { return charged_; }
    std::int64_t available() const { return available_; }

    std::int32_t blocksInUse() const { return blocks_; }
    std::int64_t bytesInUse() const { return bytes_; }

    void beginCall() { ++calls_; }
    void endCall();

    /// For tests: the `count`th allocation from now fails, once; 0 takes the order back.
    void failAllocation(std::int64_t count) { untilFailure_ = count == 0 ? never : count; }

private:
    struct Header {
        std::uint32_t length; // of a freed block: the next freed one of its chunk
        std::uint32_t owners; // `freed`: not in use
    };
    struct Chunk {
        std::uint32_t freed = 0;  // first freed block, linked through the headers
        std::uint32_t unused = 0; // blocks from here to the chunk's end were never given out
        std::uint32_t previous = 0;
        std::uint32_t next = 0;     // neighbours in the list of its class
        std::uint32_t block = 0;    // bytes that a block takes, with its header
        std::uint16_t live = 0;     // blocks in use
        std::uint16_t capacity = 0; // blocks that fit
        std::uint8_t sizeClass = 0; // 0: a large block or none
        bool clean = false;         // what was never given out is 0
    };

    static constexpr std::uint32_t freed = UINT32_MAX;
    static constexpr std::int64_t never = INT64_MAX;
    static constexpr std::uint32_t headerSize = sizeof(Header);
    static constexpr std::size_t classLimit = 160;

    Header header(std::uint32_t address) const;
    void setHeader(std::uint32_t address, Header header);
    bool inUse(std::uint32_t address) const;
    std::uint32_t allocateSmall(std::uint32_t total, std::uint32_t size);
    std::uint32_t allocateLarge(std::uint32_t total, std::uint32_t size);
    bool addChunk(std::size_t sizeClass);
    ChunkRun takeRun(std::uint32_t count);
    void linkChunk(std::uint32_t index);
    void unlinkChunk(std::uint32_t index);
    void recycle(std::uint32_t address);
    void returnEmptyChunks();
    void emptyQuarantine();

    ChunkPool pool_;
    std::vector<Chunk> chunks_;
    std::array<std::uint32_t, classLimit> open_{}; // by class: a chunk with room, or 0
    std::vector<std::uint32_t> quarantine_;
    std::int64_t available_; // limit less blocks less charges
    std::int64_t charged_ = 0;
    std::int64_t bytes_ = 0;
    std::int64_t untilFailure_ = never;
    std::int32_t blocks_ = 0;
    std::int32_t calls_ = 0;
};

} // namespace corvane
