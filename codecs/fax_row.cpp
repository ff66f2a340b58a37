#include "codecs/fax_row.h"

#include "codecs/fax_words.h"

#include <algorithm>
#include <bit>

namespace corvane {

namespace {

constexpr std::uint64_t firstPixel = std::uint64_t{1} << 63;

/// Every bit becomes the parity of itself and all bits before it.
std::uint64_t prefixParity(std::uint64_t word) {
    word ^= word >> 1;
    word ^= word >> 2;
    word ^= word >> 4;
    word ^= word >> 8;
    word ^= word >> 16;
    return word ^ word >> 32;
}

} // namespace

void FaxRow::close() {
    std::int32_t* const all = changes();
    while (count > 0 && all[count - 1] >= columns) {
        --count;
    }
    std::fill_n(all + count, 3, columns);
    std::fill_n(all + count + 3, 2, INT32_MAX);
}

void FaxAppendRuns(const FaxRow& row, bool blackIs1, std::span<std::uint64_t> marks,
                   std::span<std::byte> pixels) {
    const std::int32_t* const changes = row.changes();
    // The marks of a word are gathered before they are stored: a row's changes often share one.
    std::uint32_t at = 0;
    std::uint64_t gathered = 0;
    for (std::int32_t i = 0; i < row.count; ++i) {
        const auto place = static_cast<std::uint32_t>(changes[i]);
        if (place / 64 != at) {
            marks[at] = gathered;
            gathered = 0;
            at = place / 64;
        }
        gathered |= firstPixel >> place % 64;
    }
    marks[at] = gathered;
    if (row.black()) {
        // The bits behind the last column are white.
        const auto edge = static_cast<std::uint32_t>(row.columns);
        if (edge % 64 != 0) {
            marks[edge / 64] ^= firstPixel >> edge % 64;
        }
    }
    const std::uint64_t invert = blackIs1 ? 0 : ~std::uint64_t{0};
    std::uint64_t colour = 0; // of the pixel before the word, in all bits
    std::byte* to = pixels.data();
    for (std::uint64_t& mark : marks) {
        std::uint64_t word = colour;
        if (mark != 0) {
            word ^= prefixParity(mark);
            colour = 0 - (word & 1);
            mark = 0;
        }
        storeWord(to, word ^ invert);
        to += faxWordBytes;
    }
}

void ScanRuns(std::span<const std::byte> pixels, bool blackIs1, FaxRow& row) {
    row.begin();
    const std::uint64_t invert = blackIs1 ? 0 : ~std::uint64_t{0};
    std::int32_t* const changes = row.changes();
    std::int32_t count = 0;
    std::uint64_t last = 0; // the pixel before the word, in the first bit
    for (std::int32_t at = 0; at < row.columns; at += faxWordBits) {
        std::uint64_t word = loadWord(pixels.data() + at / 8) ^ invert;
        if (row.columns - at < faxWordBits) {
            word &= ~(~std::uint64_t{0} >> (row.columns - at));
        }
        std::uint64_t edges = word ^ (word >> 1 | last);
        last = word << 63;
        while (edges != 0) {
            const int place = std::countl_zero(edges);
            changes[count++] = at + place;
            edges ^= firstPixel >> place;
        }
    }
    row.count = count;
    row.position = row.columns;
    row.close();
}

} // namespace corvane
