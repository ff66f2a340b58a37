// JPEG data put together by hand, for what no encoder writes.
#pragma once

#include "codecs/dct/tables.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

struct JpegPart {
    int marker = 0;
    std::vector<int> content{}; ///< without its length; none: a marker alone
    std::string bits{};         ///< of the scan behind a SOS: digits, anything else only separates
};
using JpegParts = std::vector<JpegPart>;

namespace jpeg {

/// Codes of four bits, in this order, for the AC symbols of hand-made scans.
inline const std::vector<int> acSymbols{0x00, 0x01, 0x10, 0x11, 0x21, 0xF0, 0xF1, 0x02};

inline std::string ac(int symbol) {
    for (std::size_t code = 0; code < acSymbols.size(); ++code) {
        if (acSymbols[code] == symbol) {
            std::string digits;
            for (unsigned bit = 4; bit-- > 0;) {
                digits += (code >> bit & 1U) != 0 ? '1' : '0';
            }
            return digits + ' ';
        }
    }
    throw std::invalid_argument("no such symbol");
}

inline JpegPart table(int selector, std::size_t length, const std::vector<int>& symbols) {
    JpegPart part{0xC4, {selector}};
    for (std::size_t i = 1; i <= 16; ++i) {
        part.content.push_back(i == length ? static_cast<int>(symbols.size()) : 0);
    }
    part.content.insert(part.content.end(), symbols.begin(), symbols.end());
    return part;
}
/// DC codes 00, 01 and 10 for differences of as many bits.
inline JpegPart dcTable() {
    return table(0x00, 2, {0, 1, 2});
}
inline JpegPart acTable() {
    return table(0x10, 4, acSymbols);
}
inline JpegPart quantiser() {
    JpegPart part{0xDB, {0}};
    part.content.insert(part.content.end(), dctBlockSize, 16);
    return part;
}
/// Components 1, 2, ... with the first quantiser, none subsampled.
inline JpegPart frame(int marker, int width, int height, int components = 1) {
    JpegPart part{marker, {8, height >> 8, height & 255, width >> 8, width & 255, components}};
    for (int i = 1; i <= components; ++i) {
        part.content.insert(part.content.end(), {i, 0x11, 0});
    }
    return part;
}
/// A scan of the first component; `bits` from `high` to `low`, 0 for none.
inline JpegPart scan(int first, int last, int high, int low, std::string bits) {
    return {0xDA, {1, 1, 0x00, first, last, high << 4 | low}, std::move(bits)};
}

/// One block of a difference of 3, then k = 1 is 1.
inline JpegParts smallest() {
    return {quantiser(), frame(0xC0, 8, 8), dcTable(), acTable(),
            scan(0, 63, 0, 0, "10 11 " + ac(0x01) + "1 " + ac(0x00))};
}

} // namespace jpeg

/// The parts between SOI and EOI.
inline std::vector<std::byte> jpegOf(const JpegParts& parts) {
    std::vector<std::byte> data;
    const auto put = [&](int byte) { data.push_back(static_cast<std::byte>(byte)); };
    const auto putMarker = [&](int marker) {
        put(0xFF);
        put(marker);
    };
    putMarker(0xD8);
    for (const JpegPart& part : parts) {
        putMarker(part.marker);
        if (!part.content.empty()) {
            const std::size_t length = part.content.size() + 2;
            put(static_cast<int>(length >> 8));
            put(static_cast<int>(length & 255U));
            for (const int byte : part.content) {
                put(byte);
            }
        }
        std::string digits;
        for (const char digit : part.bits) {
            if (digit == '0' || digit == '1') {
                digits += digit;
            }
        }
        digits.resize((digits.size() + 7) / 8 * 8, '1');
        for (std::size_t at = 0; at < digits.size(); at += 8) {
            const int byte = std::stoi(digits.substr(at, 8), nullptr, 2);
            put(byte);
            if (byte == 0xFF) {
                put(0);
            }
        }
    }
    putMarker(0xD9);
    return data;
}

} // namespace corvane::test
