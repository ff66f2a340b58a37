// AES in chains of blocks, and the stream cipher of older files, by their keys.
#pragma once

#include "crypt/secret.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

inline constexpr std::size_t aesBlock = 16;
using AesBlock = std::array<std::uint8_t, aesBlock>;

/// AES with a key of 16 or 32 bytes, blocks chained (CBC), without padding. The chain goes on from
/// call to call.
class AesChain {
public:
    enum class Direction : std::uint8_t { encrypt, decrypt };

    /// A key of another length raises `range`.
    AesChain(Direction direction, Octets key, const AesBlock& initial);
    ~AesChain();
    AesChain(const AesChain&) = delete;
    AesChain& operator=(const AesChain&) = delete;

    /// Whole blocks, in place.
    void run(std::span<std::uint8_t> data);

private:
    Direction direction_;
    bool isLong_;
    AesBlock chained_;
    alignas(16) std::array<std::byte, 256> context_{};
};

/// The arcfour stream. Enciphering and deciphering are the same.
class Arcfour {
public:
    /// A key of no bytes, or of more than 256, raises `range`.
    explicit Arcfour(Octets key);
    ~Arcfour();
    Arcfour(const Arcfour&) = delete;
    Arcfour& operator=(const Arcfour&) = delete;

    void run(std::span<std::uint8_t> data);

private:
    alignas(16) std::array<std::byte, 272> context_{};
};

} // namespace corvane
