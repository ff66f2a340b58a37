// Filter chains: every byte stream, in both directions, runs through a chain of filters.
//
// A filter is a record that begins with its entry procedure and the filter below it, nearer the
// file. The contract, written once:
//
// - A `setup` procedure makes a filter and opens nothing; the caller owns it.
// - `linkFilter` puts it on top of a chain, which owns it from then on, and calls `link`.
// - `unlinkFilter` calls `unlink`, which finishes the data (flushes, writes end marks, closes) and
//   may raise. Then the filter is destroyed; the filter below stays and is the new top.
// - Destroying a filter that was not unlinked only abandons it: what it holds is dropped, nothing
//   is written, nothing raises. `Chain` does so for what is left when an exception passes.
// - Fewer bytes than asked for mean the end of the data; reading on yields nothing. After its data
//   a filter leaves the one below just behind the last byte that the data needed.
// - Several chains may stand on one file and be read in turn, each on a range filter: a range goes
//   back to its own place before it reads. Every other reader of a shared file does so too, and
//   need not restore the file's position.
// - Operations that a filter does not transform go to the filter below; it ignores codes from 6 up
//   that are not its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvane {

enum class Operation : std::int32_t {
    read = 0,   ///< argument: bytes wanted, then bytes delivered
    write = 1,  ///< argument: bytes given, then bytes accepted
    seek = 2,   ///< argument: position wanted (negative: from the end), then the position reached
    mark = 3,   ///< argument: the position
    link = 4,   ///< the filter has just been linked
    unlink = 5, ///< finish; the record is destroyed afterwards

    nextToken = 100,  ///< token filter: argument: the code of the token read
    streamData = 101, ///< token filter: go to the first byte of stream data
    skipSpace = 102,  ///< token filter: skip one white-space byte
};

struct Filter {
    /// Returns what the operation counts or reaches; every result is also in `argument`.
    using Entry = std::int32_t (*)(Filter& filter, Operation operation, std::byte* buffer,
                                   std::int32_t* argument);

    explicit Filter(Entry procedure) : entry(procedure) {}
    virtual ~Filter() = default;
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    /// Takes back the last bytes that it delivered, to deliver them again: how a filter that reads
    /// ahead leaves this one just after what it needed. The usual way is to seek.
    virtual void giveBack(std::span<const std::byte> bytes);
    /// Whether its bytes are others than those of the file, so that they have no places there.
    virtual bool decodes() const { return false; }

    Entry entry;
    Filter* next = nullptr;
};

using FilterOwner = std::unique_ptr<Filter>;

/// Calls the filter's entry; a null entry raises `structure`.
std::int32_t callFilter(Filter& filter, Operation operation, std::byte* buffer = nullptr,
                        std::int32_t* argument = nullptr);

/// Puts `filter` on `next` (null: it is the bottom) and links it; the new top. Where linking
/// raises, the filter is destroyed and the chain is as it was.
Filter* linkFilter(Filter* next, FilterOwner filter);

/// Finishes and destroys the top filter; the new top. It is destroyed also where finishing raises.
Filter* unlinkFilter(Filter* filter);

/// The bottom of the chain; null for null.
Filter* baseFilter(Filter* filter);

// The four byte operations, with spans.

/// Bytes delivered; fewer than asked for at the end of the data.
std::size_t readFilter(Filter& filter, std::span<std::byte> buffer);
/// Raises `io` where not all bytes were accepted.
void writeFilter(Filter& filter, std::span<const std::byte> bytes);
std::int32_t seekFilter(Filter& filter, std::int32_t position);
std::int32_t markFilter(Filter& filter);

/// Filters linked above `base` (which stays someone else's). Whatever is left is abandoned, top
/// first.
class Chain {
public:
    explicit Chain(Filter* base = nullptr) : base_(base), top_(base) {}
    Chain(Chain&& other) noexcept;
    Chain& operator=(Chain&& other) noexcept;
    ~Chain() { abandon(); }

    Filter* top() const { return top_; }
    /// Links one more filter.
    void link(FilterOwner filter);
    /// Unlinks every filter above the base, top first. Where one raises, it is gone, the rest are
    /// unlinked too, and the first code is raised again. Where no block can be guarded any more
    /// (`limit`), none is unlinked.
    void unlink();
    void abandon() noexcept;

private:
    Filter* base_;
    Filter* top_;
};

} // namespace corvane
