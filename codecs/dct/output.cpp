#include "codecs/dct/output.h"

#include <bit>
#include <cstring>

namespace corvane {

void DctOutput::bytes(std::span<const std::byte> bytes) {
    for (const std::byte value : bytes) {
        byte(std::to_integer<unsigned>(value));
    }
}

void DctOutput::dataByte(unsigned value) {
    byte(value);
    if (value == 0xFF) {
        byte(0);
    }
}

void DctOutput::putHeld() {
    constexpr std::uint64_t ones = 0x0101'0101'0101'0101U;
    if (((~held_ - ones) & held_ & (ones << 7)) == 0 && fill_ + 8 <= block_.size()) {
        std::uint64_t word = held_;
        if constexpr (std::endian::native == std::endian::little) {
            word = __builtin_bswap64(word);
        }
        std::memcpy(block_.data() + fill_, &word, sizeof word);
        fill_ += sizeof word;
        return;
    }
    for (unsigned shift = 64; shift > 0;) {
        shift -= 8;
        dataByte(static_cast<unsigned>(held_ >> shift) & 0xFFU);
    }
}

void DctOutput::alignBits() {
    if (const unsigned over = free_ % 8; over != 0) {
        bits((1U << over) - 1, over);
    }
    for (unsigned left = 64 - free_; left > 0;) {
        left -= 8;
        dataByte(static_cast<unsigned>(held_ >> left) & 0xFFU);
    }
    held_ = 0;
    free_ = 64;
}

void DctOutput::flush() {
    sink_.write(std::span(block_).first(fill_));
    fill_ = 0;
}

} // namespace corvane
