#include "codecs/dct/huffman.h"

#include "codecs/dct/error.h"

#include <algorithm>

namespace corvane {

namespace {

/// Calls `body(symbol index, code, length)` for every code, shortest first.
template <class Body>
void eachCode(const DctHuffmanSpec& spec, Body body) {
    if (symbolCount(spec) > spec.symbols.size()) {
        dct_error();
    }
    std::uint32_t code = 0;
    std::size_t index = 0;
    for (unsigned length = 1; length <= 16; ++length) {
        for (unsigned i = 0; i < spec.counts[length - 1]; ++i) {
            if (code >= 1U << length) {
                dct_error();
            }
            body(index++, code++, length);
        }
        code <<= 1;
    }
}

/// Bits of the value that follows a symbol.
unsigned valueBits(DctHuffmanClass use, std::uint8_t symbol) {
    return use == DctHuffmanClass::dc ? symbol : symbol & 15U;
}

/// What `ahead` (as many bits as are looked up) says where it begins with a code.
DctLook lookOf(std::uint32_t ahead, std::uint8_t symbol, unsigned length, unsigned size) {
    DctLook look{.symbol = symbol, .length = static_cast<std::uint8_t>(length)};
    if (size > 0 && length + size <= DctDecodeTable::lookBits) {
        const auto value = static_cast<std::int32_t>(
            ahead >> (DctDecodeTable::lookBits - length - size) & ((1U << size) - 1));
        look.value =
            static_cast<std::int16_t>(value < 1 << (size - 1) ? value - (1 << size) + 1 : value);
        look.length = static_cast<std::uint8_t>((length + size) | DctLook::whole);
    }
    return look;
}

} // namespace

DctDecodeTable::DctDecodeTable(const DctHuffmanSpec& spec, DctHuffmanClass use)
    : symbols_(spec.symbols) {
    eachCode(spec, [&](std::size_t index, std::uint32_t code, unsigned length) {
        const std::uint8_t symbol = spec.symbols[index];
        if (use == DctHuffmanClass::dc && symbol > 15) {
            dct_error();
        }
        above_[length] = (code + 1) << (16 - length);
        offset_[length] = static_cast<std::int32_t>(index) - static_cast<std::int32_t>(code);
        if (length > lookBits) {
            return;
        }
        const std::uint32_t first = code << (lookBits - length);
        for (std::uint32_t ahead = first; ahead < first + (1U << (lookBits - length)); ++ahead) {
            looks_[ahead] = lookOf(ahead, symbol, length, valueBits(use, symbol));
            lengths_[ahead] = static_cast<std::uint8_t>(length);
        }
    });
}

std::uint8_t DctDecodeTable::longSymbol(DctBits& bits) const {
    const std::uint32_t ahead = bits.peek(16);
    for (unsigned length = lookBits + 1; length <= 16; ++length) {
        if (ahead < above_[length]) {
            const auto code = static_cast<std::int32_t>(bits.take(length));
            return symbols_[static_cast<std::size_t>(code + offset_[length]) & 0xFFU];
        }
    }
    DCTDBadHuff();
}

DctEncodeTable dctEncodeTable(const DctHuffmanSpec& spec) {
    DctEncodeTable table;
    eachCode(spec, [&](std::size_t index, std::uint32_t code, unsigned length) {
        const std::uint8_t symbol = spec.symbols[index];
        table.codes[symbol] = static_cast<std::uint16_t>(code);
        table.lengths[symbol] = static_cast<std::uint8_t>(length);
    });
    return table;
}

} // namespace corvane
