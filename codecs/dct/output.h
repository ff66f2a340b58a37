// Writing bytes and the bits of entropy-coded data to a sink, in blocks.
#pragma once

#include "codecs/dct/huffman.h"
#include "codecs/dct/stream.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

class DctOutput {
public:
    explicit DctOutput(DctSink& sink) : sink_(sink) {}

    void byte(unsigned value) {
        if (fill_ == block_.size()) {
            flush();
        }
        block_[fill_++] = static_cast<std::byte>(value);
    }
    void word(std::size_t value) {
        byte(static_cast<unsigned>(value >> 8) & 0xFFU);
        byte(static_cast<unsigned>(value) & 0xFFU);
    }
    void marker(int code) {
        byte(0xFF);
        byte(static_cast<unsigned>(code));
    }
    void bytes(std::span<const std::byte> bytes);

    /// The lower `count` bits (at most 32) of `bits`, which has no others.
    void bits(std::uint32_t bits, unsigned count) {
        if (count <= free_) {
            free_ -= count;
            held_ = held_ << count | bits;
            return;
        }
        const unsigned rest = count - free_;
        held_ = held_ << free_ | bits >> rest;
        putHeld();
        // What was written already moves out at the top.
        held_ = bits;
        free_ = 64 - rest;
    }
    /// Fills the last byte up with ones.
    void alignBits();
    /// Hands the sink all whole bytes.
    void flush();

private:
    void putHeld();
    void dataByte(unsigned value);

    DctSink& sink_;
    std::uint64_t held_ = 0; ///< the lower 64 - `free_` bits wait
    unsigned free_ = 64;
    std::size_t fill_ = 0;
    std::array<std::byte, 8192> block_{};
};

} // namespace corvane
