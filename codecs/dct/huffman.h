// Huffman tables made from their written form (ISO/IEC 10918-1, annex C and F.2.2.3).
#pragma once

#include "codecs/dct/input.h"
#include "codecs/dct/tables.h"

#include <array>
#include <cstdint>

namespace corvane {

enum class DctHuffmanClass : std::uint8_t { dc = 0, ac = 1 };

/// What the next bits of the data say.
struct DctLook {
    static constexpr std::uint8_t whole = 0x80;

    std::int16_t value =
        0; ///< where `whole` is set: the coefficient that the code and its bits say
    std::uint8_t symbol = 0;
    std::uint8_t length = 0; ///< bits of the code, or with `whole` of code and value; 0: longer
};

class DctDecodeTable {
public:
    static constexpr unsigned lookBits = 10;

    /// Raises `codec` where the lengths make no prefix code or a DC symbol is above 15
    /// (`DCTDmake_huffdec`).
    DctDecodeTable(const DctHuffmanSpec& spec, DctHuffmanClass use);

    const DctLook& look(const DctBits& bits) const { return looks_[bits.peek(lookBits)]; }

    /// The next symbol. 32 bits are ready before, 16 after it.
    std::uint8_t symbol(DctBits& bits) const {
        const std::uint8_t length = lengths_[bits.peek(lookBits)];
        if (length != 0) {
            const std::uint8_t symbol = looks_[bits.peek(lookBits)].symbol;
            bits.drop(length);
            return symbol;
        }
        return longSymbol(bits);
    }
    /// As `symbol`, for codes longer than `lookBits`. No such code: `DCTDBadHuff`.
    std::uint8_t longSymbol(DctBits& bits) const;

private:
    std::array<DctLook, std::size_t{1} << lookBits> looks_{};
    std::array<std::uint8_t, std::size_t{1} << lookBits> lengths_{}; ///< of the codes alone
    /// By length: first 16-bit number above all codes of that length, moved to the left.
    std::array<std::uint32_t, 17> above_{};
    std::array<std::int32_t, 17> offset_{}; ///< from a code to its place in `symbols_`
    std::array<std::uint8_t, 256> symbols_{};
};

/// By symbol: code and length; length 0: none.
struct DctEncodeTable {
    std::array<std::uint16_t, 256> codes{};
    std::array<std::uint8_t, 256> lengths{};
};

/// Raises `codec` where the lengths make no prefix code.
DctEncodeTable dctEncodeTable(const DctHuffmanSpec& spec);

} // namespace corvane
