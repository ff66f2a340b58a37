#include "toolbox/zone.h"

#include "toolbox/poison.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace corvane {

namespace {

constexpr std::uint32_t granule = 8;
constexpr std::uint32_t largestExact = 1024;    // up to here a class for every multiple of 8
constexpr std::uint32_t largestSmall = 1 << 15; // up to here four classes for each doubling
constexpr std::uint32_t exactClasses = largestExact / granule;

// Bytes past the end of a block that AddressSanitizer watches.
constexpr std::uint32_t watched = poisons ? granule : 0;

constexpr std::size_t classOf(std::uint32_t total) {
    if (total <= largestExact) {
        return total / granule;
    }
    const auto doubling = static_cast<std::uint32_t>(std::bit_width(total - 1)) - 11;
    const std::uint32_t quarter = (total - 1) >> (doubling + 8) & 3;
    return exactClasses + 1 + doubling * 4 + quarter;
}

constexpr std::uint32_t classSize(std::size_t sizeClass) {
    const auto number = static_cast<std::uint32_t>(sizeClass);
    if (number <= exactClasses) {
        return number * granule;
    }
    const std::uint32_t step = number - exactClasses - 1;
    return (largestExact << (step / 4)) / 4 * (step % 4 + 5);
}

constexpr std::size_t classCount = classOf(largestSmall) + 1;
static_assert(classSize(classOf(1025)) == 1280 && classSize(classOf(1280)) == 1280);
static_assert(classSize(classOf(1281)) == 1536 && classSize(classOf(2048)) == 2048);
static_assert(classSize(classOf(2049)) == 2560 && classSize(classOf(largestSmall)) == largestSmall);

/// Small blocks are cleared by the word, which is all theirs, faster than a call could.
void clearBytes(std::byte* bytes, std::uint32_t count) {
    constexpr std::uint32_t fewWords = 16;
    const std::uint32_t words = (count + granule - 1) / granule;
    if (poisons || words > fewWords) {
        std::memset(bytes, 0, count);
        return;
    }
    for (std::uint32_t word = 0; word < words; ++word) {
        const std::uint64_t zero = 0;
        std::memcpy(bytes + std::size_t{word} * granule, &zero, granule);
    }
}

constexpr std::uint32_t chunkOf(std::uint32_t address) {
    return address >> ChunkPool::shift;
}

} // namespace

Zone::Zone(std::int64_t limit) : pool_(limit), available_(pool_.limit()) {
    static_assert(classCount <= classLimit);
}

Zone::Header Zone::header(std::uint32_t address) const {
    Header value;
    std::memcpy(&value, base() + address - headerSize, sizeof value);
    return value;
}

void Zone::setHeader(std::uint32_t address, Header header) {
    std::memcpy(base() + address - headerSize, &header, sizeof header);
}

bool Zone::inUse(std::uint32_t address) const {
    const std::uint32_t index = chunkOf(address);
    if (address % granule != 0 || address < headerSize || index >= chunks_.size()) {
        return false;
    }
    const Chunk& chunk = chunks_[index];
    return address - headerSize < chunk.unused && header(address).owners != freed;
}

std::uint32_t Zone::allocate(std::int32_t size) {
    if (size < 0) [[unlikely]] {
        return 0;
    }
    if (--untilFailure_ == 0) [[unlikely]] {
        untilFailure_ = never;
        return 0;
    }
    const auto length = static_cast<std::uint32_t>(size);
    const std::uint32_t total = (length + headerSize + watched + granule - 1) / granule * granule;
    const std::uint32_t address =
        total <= largestSmall ? allocateSmall(total, length) : allocateLarge(total, length);
    if (address == 0) [[unlikely]] {
        return 0;
    }
    ++blocks_;
    bytes_ += length;
    return address;
}

std::uint32_t Zone::allocateSmall(std::uint32_t total, std::uint32_t size) {
    const std::size_t sizeClass = classOf(total);
    if (open_[sizeClass] == 0 && !addChunk(sizeClass)) [[unlikely]] {
        return 0;
    }
    const std::uint32_t index = open_[sizeClass];
    Chunk& chunk = chunks_[index];
    const std::uint32_t block = chunk.block;
    if (block > available_) [[unlikely]] {
        return 0;
    }
    std::uint32_t address = chunk.freed;
    bool zero = false;
    if (address != 0) {
        chunk.freed = header(address).length;
    } else {
        address = chunk.unused + headerSize;
        chunk.unused += block;
        zero = chunk.clean;
        if constexpr (poisons) {
            unpoison(base() + address - headerSize, headerSize);
        }
    }
    if (++chunk.live == chunk.capacity) {
        unlinkChunk(index);
    }
    unpoison(base() + address, size);
    setHeader(address, {size, 1});
    if (!zero) {
        clearBytes(base() + address, size);
    }
    available_ -= block;
    return address;
}

std::uint32_t Zone::allocateLarge(std::uint32_t total, std::uint32_t size) {
    const std::uint32_t count = chunkOf(total - 1) + 1;
    if ((std::int64_t{count} << ChunkPool::shift) > available_) {
        return 0;
    }
    const ChunkRun run = takeRun(count);
    if (run.count == 0) {
        return 0;
    }
    const std::uint32_t address = (run.first << ChunkPool::shift) + headerSize;
    // Only the header's place counts as given out: no address further in is a block's.
    chunks_[run.first] = {.unused = address, .block = count << ChunkPool::shift};
    unpoison(base() + address - headerSize, headerSize + std::size_t{size});
    if (!run.clean) {
        pool_.clear(run.first, count, std::int64_t{size} + headerSize);
    }
    setHeader(address, {size, 1});
    available_ -= std::int64_t{count} << ChunkPool::shift;
    return address;
}

ChunkRun Zone::takeRun(std::uint32_t count) {
    ChunkRun run = pool_.take(count);
    if (run.count == 0) {
        // Watching freed blocks is a luxury for as long as there is room.
        emptyQuarantine();
        returnEmptyChunks();
        run = pool_.take(count);
    }
    if (run.count != 0) {
        if (run.first + count > chunks_.size()) {
            chunks_.resize(run.first + count);
        }
        poison(base() + (std::size_t{run.first} << ChunkPool::shift),
               std::size_t{count} << ChunkPool::shift);
    }
    return run;
}

bool Zone::addChunk(std::size_t sizeClass) {
    const ChunkRun run = takeRun(1);
    if (run.count == 0) {
        return false;
    }
    chunks_[run.first] = {
        .unused = run.first << ChunkPool::shift,
        .block = classSize(sizeClass),
        .capacity = static_cast<std::uint16_t>(ChunkPool::chunkSize / classSize(sizeClass)),
        .sizeClass = static_cast<std::uint8_t>(sizeClass),
        .clean = run.clean,
    };
    linkChunk(run.first);
    return true;
}

void Zone::linkChunk(std::uint32_t index) {
    Chunk& chunk = chunks_[index];
    std::uint32_t& head = open_[chunk.sizeClass];
    chunk.previous = 0;
    chunk.next = head;
    if (head != 0) {
        chunks_[head].previous = index;
    }
    head = index;
}

void Zone::unlinkChunk(std::uint32_t index) {
    const Chunk& chunk = chunks_[index];
    if (chunk.previous != 0) {
        chunks_[chunk.previous].next = chunk.next;
    } else {
        open_[chunk.sizeClass] = chunk.next;
    }
    if (chunk.next != 0) {
        chunks_[chunk.next].previous = chunk.previous;
    }
}

void Zone::dispose(std::uint32_t address) {
    if (!inUse(address)) {
        return;
    }
    const Header old = header(address);
    --blocks_;
    bytes_ -= old.length;
    available_ += chunks_[chunkOf(address)].block;
    setHeader(address, {0, freed});
    if constexpr (poisons) {
        poison(base() + address, old.length);
        if (calls_ > 0) {
            quarantine_.push_back(address);
            return;
        }
    }
    recycle(address);
}

void Zone::recycle(std::uint32_t address) {
    const std::uint32_t index = chunkOf(address);
    Chunk& chunk = chunks_[index];
    if (chunk.sizeClass == 0) {
        const std::uint32_t count = chunkOf(chunk.block);
        chunk = {};
        pool_.give(index, count);
        return;
    }
    setHeader(address, {chunk.freed, freed});
    chunk.freed = address;
    if (chunk.live-- == chunk.capacity) {
        linkChunk(index);
    }
    // A class keeps one empty chunk, so that a block made and freed in turn costs no chunk each
    // time.
    if (chunk.live == 0 && (chunk.previous != 0 || chunk.next != 0)) {
        unlinkChunk(index);
        chunk = {};
        pool_.give(index, 1);
    }
}

void Zone::returnEmptyChunks() {
    for (std::uint32_t index = 1; index < chunks_.size(); ++index) {
        Chunk& chunk = chunks_[index];
        if (chunk.sizeClass != 0 && chunk.live == 0) {
            unlinkChunk(index);
            chunk = {};
            pool_.give(index, 1);
        }
    }
}

void Zone::emptyQuarantine() {
    for (const std::uint32_t address : quarantine_) {
        recycle(address);
    }
    quarantine_.clear();
}

void Zone::endCall() {
    if (calls_ > 0 && --calls_ == 0) {
        emptyQuarantine();
    }
}

std::int32_t Zone::size(std::uint32_t address) const {
    return address == 0 ? 0 : static_cast<std::int32_t>(header(address).length);
}

void Zone::retain(std::uint32_t address) {
    if (address != 0) {
        Header value = header(address);
        ++value.owners;
        setHeader(address, value);
    }
}

bool Zone::release(std::uint32_t address) {
    if (address == 0) {
        return false;
    }
    Header value = header(address);
    if (value.owners == 0 || value.owners == freed) {
        return false;
    }
    --value.owners;
    setHeader(address, value);
    return value.owners == 0;
}

bool Zone::charge(std::int64_t bytes) {
    if (bytes < 0 || bytes > available_) {
        return false;
    }
    charged_ += bytes;
    available_ -= bytes;
    return true;
}

void Zone::discharge(std::int64_t bytes) {
    const std::int64_t returned = std::clamp(bytes, std::int64_t{0}, charged_);
    charged_ -= returned;
    available_ += returned;
}

} // namespace corvane
