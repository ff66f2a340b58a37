// Bits on their way out: first the codes of one row, then the bits of the byte stream.
#pragma once

#include "codecs/fax/stream.h"
#include "codecs/fax/tables.h"
#include "codecs/fax/words.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

/// The codes of one row, in memory that holds the longest coding of any row: writing a code needs
/// no check, and two codings of a row can be compared before one is taken.
class FaxRowBits {
public:
    explicit FaxRowBits(std::int32_t columns) : bytes_(bytesFor(columns)) {}

    /// A code has at most 8 bits for each pixel that it adds to the row (a run of one white and one
    /// of one black take 3 + 6 + 3), a pass code 4 for two; the rest is for what frames a row.
    static std::size_t bytesFor(std::int32_t columns) {
        return static_cast<std::size_t>(columns) * 2 + 64;
    }

    void clear() {
        pending_ = 0;
        pendingBits_ = 0;
        stored_ = 0;
    }
    /// At most 32 bits.
    void put(std::uint64_t bits, unsigned length) {
        pending_ = pending_ << length | bits;
        pendingBits_ += length;
        if (pendingBits_ >= 32) {
            pendingBits_ -= 32;
            storeWord(bytes_.data() + stored_, pending_ >> pendingBits_ << 32);
            stored_ += 4;
        }
    }
    void put(FaxCode code) { put(code.bits, code.length); }

    std::size_t length() const { return 8 * stored_ + pendingBits_; } ///< bits
    /// The bits but for the last few, in groups of 32.
    std::span<const std::byte> groups() const { return std::span(bytes_).first(stored_); }
    std::uint64_t lastBits() const { return pending_ & ((std::uint64_t{1} << pendingBits_) - 1); }
    unsigned lastLength() const { return pendingBits_; } ///< below 32

private:
    std::vector<std::byte> bytes_;
    std::uint64_t pending_ = 0;
    unsigned pendingBits_ = 0;
    std::size_t stored_ = 0;
};

class FaxBitWriter {
public:
    explicit FaxBitWriter(FaxByteStream& stream) : stream_(&stream) {}

    /// At most 32 bits.
    void put(std::uint64_t bits, unsigned length);
    void put(FaxCode code) { put(code.bits, code.length); }
    /// OutputCodes: the codes of a row.
    void put(const FaxRowBits& row);
    void padToByte() { put(0, (8 - pendingBits_) % 8); }
    /// Bits of the last byte that are written already, 0 to 7.
    unsigned bitsInByte() const { return pendingBits_; }

private:
    void put32(std::uint32_t group);

    FaxByteStream* stream_;
    std::uint64_t pending_ = 0;
    unsigned pendingBits_ = 0; ///< below 8 between calls
};

} // namespace corvane
