// Fixed tables of the DCT codec: coefficient order, the built-in quantisers and Huffman codes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

inline constexpr std::size_t dctBlockSize = 64;
inline constexpr std::size_t dctComponentLimit = 4;

/// Where the coefficients of a block lie, row by row, in the order in which they are coded
/// (ISO/IEC 10918-1, figure 5). 16 more entries catch runs of damaged data that pass the end.
extern const std::array<std::uint8_t, dctBlockSize + 16> dctNaturalOrder;

/// Entries in zigzag order.
using DctQuantiser = std::array<std::uint16_t, dctBlockSize>;

extern const DctQuantiser qluma;
extern const DctQuantiser qkroma;    ///< chrominance, not subsampled
extern const DctQuantiser qkroma_ds; ///< chrominance, subsampled

/// How a Huffman code is written in a file (ISO/IEC 10918-1, B.2.4.2).
struct DctHuffmanSpec {
    std::array<std::uint8_t, 16> counts{};   ///< of codes of 1, 2, ... 16 bits
    std::array<std::uint8_t, 256> symbols{}; ///< shortest code first
};

/// Symbols that a code has; more than 256 are damage.
constexpr std::size_t symbolCount(const DctHuffmanSpec& spec) {
    std::size_t count = 0;
    for (const std::uint8_t ofLength : spec.counts) {
        count += ofLength;
    }
    return count;
}

/// Built-in codes: luminance first, then chrominance. The AC codes are those of ISO/IEC 10918-1,
/// tables K.5 and K.6.
extern const std::array<DctHuffmanSpec, 2> dctBuiltInDc;
extern const std::array<DctHuffmanSpec, 2> dctBuiltInAc;

} // namespace corvane
