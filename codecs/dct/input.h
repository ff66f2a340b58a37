// Reading bytes, segments and bits of DCT data from a source.
#pragma once

#include "codecs/dct/stream.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane {

/// One byte after the other. What was read is gone past in the source when `settle` is called.
class DctInput {
public:
    explicit DctInput(DctSource& source) : source_(source) {}

    /// The next byte, or -1 at the end of the data.
    int get() {
        if (next_ == end_ && !refill()) {
            return -1;
        }
        return std::to_integer<int>(*next_++);
    }
    /// Leaves the source just after the last byte read.
    void settle();

    /// Bytes in hand.
    std::size_t inHand() const { return static_cast<std::size_t>(end_ - next_); }
    /// The next eight bytes, first byte uppermost, where so many are in hand.
    std::uint64_t peekEight() const {
        std::uint64_t word = 0;
        std::memcpy(&word, next_, sizeof word);
        if constexpr (std::endian::native == std::endian::little) {
            word = __builtin_bswap64(word);
        }
        return word;
    }
    void skip(std::size_t count) { next_ += count; }

private:
    bool refill();

    DctSource& source_;
    const std::byte* begin_ = nullptr;
    const std::byte* next_ = nullptr;
    const std::byte* end_ = nullptr;
};

/// The bits of entropy-coded data (ISO/IEC 10918-1, F.2.2.5). They end at a marker or with the
/// data; zeros follow, and `overrun` tells when some of them were taken.
class DctBits {
public:
    explicit DctBits(DctInput& input) : input_(input) {}

    /// Makes at least 56 bits ready; for fewer than 57 that are.
    void fill() {
        if (marker_ == 0 && input_.inHand() >= 8) {
            const std::uint64_t word = input_.peekEight();
            if (!hasMarkerByte(word)) {
                // Bits below `count_` are those of the bytes that follow: to set them again changes
                // nothing.
                bits_ |= word >> count_;
                input_.skip((63U - count_) >> 3);
                count_ |= 56U;
                return;
            }
        }
        fillSlowly();
    }
    /// Makes at least 32 bits ready.
    void need() {
        if (count_ < 32) {
            fill();
        }
    }
    /// 1 to 32 bits that are ready.
    std::uint32_t peek(unsigned count) const {
        return static_cast<std::uint32_t>(bits_ >> (64U - count));
    }
    void drop(unsigned count) {
        bits_ <<= count;
        count_ -= count;
    }
    std::uint32_t take(unsigned count) {
        const std::uint32_t value = peek(count);
        drop(count);
        return value;
    }
    /// One bit, made ready if need be.
    bool bit() {
        need();
        return take(1) != 0;
    }
    /// The next `size` bits (0 to 15, ready) as a signed value (F.2.2.1, EXTEND).
    std::int32_t extended(unsigned size) {
        if (size == 0) {
            return 0;
        }
        const auto value = static_cast<std::int32_t>(take(size));
        return value < 1 << (size - 1) ? value - (1 << size) + 1 : value;
    }

    bool overrun() const { return padded_ > count_; }
    /// Forgets the bits up to the next marker.
    void forget();
    /// The marker at which the bits ended, which is then forgotten; 0 where there was none, -1 for
    /// the end of the data.
    int takeMarker();

private:
    static bool hasMarkerByte(std::uint64_t word) {
        constexpr std::uint64_t ones = 0x0101'0101'0101'0101U;
        return ((~word - ones) & word & (ones << 7)) != 0;
    }
    void fillSlowly();
    /// The next byte of entropy-coded data, or -1 at a marker or the end.
    int dataByte();

    DctInput& input_;
    std::uint64_t bits_ = 0; ///< the next bit uppermost
    unsigned count_ = 0;
    unsigned padded_ = 0; ///< of `count_`, zeros behind the end
    int marker_ = 0;
};

} // namespace corvane
