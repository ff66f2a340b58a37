#include "codecs/fax/row.h"

#include "codecs/fax/words.h"

#include <algorithm>
#include <bit>
#include <cstring>

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

void FaxAppendRuns(const FaxRow& row, bool blackIs1, std::span<std::byte> pixels) {
    const std::uint64_t invert = blackIs1 ? 0 : ~std::uint64_t{0};
    if (row.count == 0) {
        std::memset(pixels.data(), static_cast<int>(invert & 0xFF), pixels.size());
        return;
    }
    // A bit for each change first. Bytes of their own, as changes that share a word would wait for
    // one another.
    std::memset(pixels.data(), 0, pixels.size());
    const auto mark = [&](std::int32_t place) {
        const auto bit = static_cast<std::uint32_t>(place);
        pixels[bit / 8] |= std::byte{0x80} >> bit % 8;
    };
    const std::int32_t* const changes = row.changes();
    const std::int32_t count = row.count; // for all the compiler knows, a mark may change the row's
    for (std::int32_t i = 0; i < count; ++i) {
        mark(changes[i]);
    }
    if (row.black() && row.columns % faxWordBits != 0) {
        mark(row.columns); // the bits behind the last column are white
    }
    std::uint64_t colour = 0; // of the pixel before the word, in all bits
    for (std::size_t at = 0; at < pixels.size(); at += faxWordBytes) {
        std::byte* const there = pixels.data() + at;
        const std::uint64_t word = colour ^ prefixParity(loadWord(there));
        colour = 0 - (word & 1);
        storeWord(there, word ^ invert);
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
