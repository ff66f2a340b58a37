// Eight bytes as one word, the first byte the most significant: pixels and codes run from there.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane {

inline constexpr std::size_t faxWordBytes = 8;
inline constexpr std::int32_t faxWordBits = 64;

constexpr std::uint64_t firstByteHighest(std::uint64_t word) {
    if constexpr (std::endian::native == std::endian::little) {
        word = (word & 0x00FF00FF00FF00FF) << 8 | (word >> 8 & 0x00FF00FF00FF00FF);
        word = (word & 0x0000FFFF0000FFFF) << 16 | (word >> 16 & 0x0000FFFF0000FFFF);
        word = word << 32 | word >> 32;
    }
    return word;
}

inline std::uint64_t loadWord(const std::byte* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, faxWordBytes);
    return firstByteHighest(word);
}

inline void storeWord(std::byte* bytes, std::uint64_t word) {
    word = firstByteHighest(word);
    std::memcpy(bytes, &word, faxWordBytes);
}

} // namespace corvane
