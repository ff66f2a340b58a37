// A fast 64-bit digest of bytes, to notice that a page has changed. Not a guard against forgery.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// Fed with the bytes in any chunking, it gives the same answer; on every machine too. Two lanes
/// take 8 bytes each in turn.
class Digest {
public:
    void feed(std::span<const std::byte> bytes);
    /// Of all bytes fed so far; more may follow.
    std::uint64_t value() const;

private:
    static constexpr std::size_t stripe = 16;

    std::uint64_t left_ = 0x243F6A8885A308D3; // digits of pi
    std::uint64_t right_ = 0x13198A2E03707344;
    std::uint64_t length_ = 0;
    std::array<std::byte, stripe> held_{}; // what is left over from whole stripes
};

} // namespace corvane
