// Eight bytes as one word, the first byte the most significant: pixels and codes run from there.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane {

inline constexpr std::size_t faxWordBytes = 8;
inline constexpr std::int32_t faxWordBits = 64;

inline std::uint64_t loadWord(const std::byte* bytes) {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < faxWordBytes; ++i) {
        word |= std::to_integer<std::uint64_t>(bytes[i]) << (56 - 8 * i);
    }
    return word;
}

inline void storeWord(std::byte* bytes, std::uint64_t word) {
    for (std::size_t i = 0; i < faxWordBytes; ++i) {
        bytes[i] = static_cast<std::byte>(word >> (56 - 8 * i));
    }
}

} // namespace corvane
