// One row as the places where its colour changes, and its way from and to pixels.
//
// A row begins white. Places ascend strictly: a run of no pixels leaves no trace, as the standards
// compare pixels, not codes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

struct FaxRow {
    explicit FaxRow(std::int32_t width)
        : columns(width), places(static_cast<std::size_t>(width) + 10) {
        begin();
        close();
    }

    /// The change of a number, -1 (before all others) to `count`. In a closed row the right edge
    /// stands three times behind them, for b1 of either colour and b2, and then what no search
    /// passes.
    const std::int32_t* changes() const { return places.data() + 1; }
    std::int32_t* changes() { return places.data() + 1; }
    /// The colour at `position`.
    bool black() const { return count % 2 != 0; }

    /// An empty row, at its left edge.
    void begin() {
        places[0] = -1;
        count = 0;
        position = 0;
        reference = 0;
    }
    /// Changes the colour at `position`.
    void change() { count = changed(changes(), count, position); }
    /// Ends the row: no change at or behind the last column, which then stands behind them all.
    void close();

    /// The count of changes after one more at `place`.
    static std::int32_t changed(std::int32_t* changes, std::int32_t count, std::int32_t place) {
        if (count > 0 && changes[count - 1] == place) {
            return count - 1;
        }
        changes[count] = place;
        return count + 1;
    }

    std::int32_t columns;
    std::int32_t count = 0;     ///< changes so far
    std::int32_t position = 0;  ///< pixels coded so far
    std::int32_t reference = 0; ///< two-dimensional: where to look for b1 in the row above
    std::vector<std::int32_t> places;
};

/// How the decoding of a row, or of a part of one, ended.
enum class FaxRowEnd {
    complete, ///< all columns are decoded
    noCode,   ///< what stands at the reader is no code of this coding
    damaged,  ///< codes that no row has
    left,     ///< the uncompressed mode was left
};

/// Bytes of a row of pixels.
constexpr std::size_t faxRowBytes(std::int32_t columns) {
    return (static_cast<std::size_t>(columns) + 7) / 8;
}
/// Words of a row of pixels; buffers of pixels are this long.
constexpr std::size_t faxRowWords(std::int32_t columns) {
    return (static_cast<std::size_t>(columns) + 63) / 64;
}

/// Packs a closed row into `pixels`, whole words. `blackIs1`: bits of black pixels are 1. The bits
/// behind the last column are white.
void FaxAppendRuns(const FaxRow& row, bool blackIs1, std::span<std::byte> pixels);

/// The closed row of `pixels`, whole words; bits behind the last column are ignored.
void ScanRuns(std::span<const std::byte> pixels, bool blackIs1, FaxRow& row);

} // namespace corvane
