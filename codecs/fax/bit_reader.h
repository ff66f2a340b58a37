// Bits of a byte stream, most significant first. Past the end of the data they are zeros, which
// begin no code of any table; `overrun` tells whether any of those were used.
//
// A reader is small and is copied into a local of a hot loop, and back after it.
#pragma once

#include "codecs/fax/stream.h"
#include "codecs/fax/words.h"

#include <bit>
#include <cstdint>

namespace corvane {

class FaxBitReader {
public:
    explicit FaxBitReader(FaxByteStream& stream) : stream_(&stream) {}

    /// After it, `bits` bits can be peeked at and skipped; at most 56.
    void need(unsigned bits) {
        if (count_ < bits) [[unlikely]] {
            refill();
        }
    }
    /// The next bits, right-aligned; 1 to 56 that were asked for by `need`.
    std::uint32_t peek(unsigned bits) const {
        return static_cast<std::uint32_t>(window_ >> (64 - bits));
    }
    void skip(unsigned bits) {
        window_ <<= bits;
        count_ -= bits;
    }
    /// Zeros that come next; exact up to the number of bits asked for.
    unsigned zeros() const { return static_cast<unsigned>(std::countl_zero(window_)); }

    /// Drops the rest of a byte that was begun.
    void alignToByte() { skip(count_ % 8); }
    bool overrun() const { return count_ < padding_; }
    /// True where the data has no more bits.
    bool atEnd();

    /// Goes to the next end of line, behind whatever comes before it; only its eleven zeros and the
    /// one are left of it. False where the data ends first.
    bool findEndOfLine();
    /// What stands here. An end of line is left as by `findEndOfLine`, its fill skipped; `dataEnd`
    /// means that nothing but zeros is left.
    enum class Here { code, endOfLine, dataEnd };
    Here lookHere();

    /// BitStmUngetResidue: gives whole bytes that were not used back to the byte stream.
    void ungetResidue();

private:
    void refill() {
        if (stream_->count >= faxWordBytes) [[likely]] {
            // Bits beyond the whole bytes may stay in the window: the next word brings the same.
            window_ |= loadWord(stream_->current) >> count_;
            const unsigned bytes = (64 - count_) / 8;
            stream_->current += bytes;
            stream_->count -= bytes;
            count_ += 8 * bytes;
        } else {
            *this = refilledByBytes(*this);
        }
    }
    static FaxBitReader refilledByBytes(FaxBitReader reader);
    /// Skips zeros until a one can be seen or the data ends; false in the second case.
    bool skipFill();

    std::uint64_t window_ = 0; ///< the next bits, left-aligned
    unsigned count_ = 0;       ///< bits in the window
    unsigned padding_ = 0;     ///< zeros appended behind the end of the data
    FaxByteStream* stream_;
};

} // namespace corvane
