#include "codecs/fax/uncompressed.h"

#include "codecs/fax/tables.h"

#include <algorithm>

namespace corvane {

namespace {

/// Pixels of one colour; false where they pass the right edge.
bool append(FaxRow& row, bool black, std::int32_t pixels) {
    if (pixels > row.columns - row.position) {
        return false;
    }
    if (pixels > 0 && black != row.black()) {
        row.change();
    }
    row.position += pixels;
    return true;
}

/// The zeros before a one, which is skipped with them; more than any code has: none of it skipped.
unsigned readCode(FaxBitReader& reader) {
    reader.need(32);
    const unsigned zeros = reader.zeros();
    if (zeros <= uncompressedMostZeros) {
        reader.skip(zeros + 1);
    }
    return zeros;
}

bool readColour(FaxBitReader& reader) {
    reader.need(1);
    const bool black = reader.peek(1) != 0;
    reader.skip(1);
    return black;
}

/// A row is complete inside the mode.
FaxRowEnd endInside(FaxBitReader& reader, bool mayEndInside, bool& inside) {
    reader.need(32);
    if (reader.zeros() == uncompressedExitZeros) {
        readCode(reader);
        readColour(reader);
        inside = false;
        return FaxRowEnd::complete;
    }
    return mayEndInside ? FaxRowEnd::complete : FaxRowEnd::damaged;
}

} // namespace

FaxRowEnd DecompressUnc(FaxBitReader& reader, FaxRow& row, bool mayEndInside, bool& inside) {
    while (row.position < row.columns) {
        const unsigned zeros = readCode(reader);
        if (zeros > uncompressedMostZeros) {
            return FaxRowEnd::noCode;
        }
        const bool exit = zeros >= uncompressedExitZeros;
        if (!append(row, false,
                    static_cast<std::int32_t>(exit ? zeros - uncompressedExitZeros : zeros))) {
            return FaxRowEnd::damaged;
        }
        if (exit) {
            inside = false;
            if (readColour(reader) != row.black()) {
                row.change();
            }
            return row.position == row.columns ? FaxRowEnd::complete : FaxRowEnd::left;
        }
        if (zeros < uncompressedWhites && !append(row, true, 1)) {
            return FaxRowEnd::damaged;
        }
    }
    return endInside(reader, mayEndInside, inside);
}

void CodeUncompressed(const FaxRow& row, FaxRowBits& bits) {
    const std::int32_t* const changes = row.changes();
    std::int32_t from = 0;
    std::int32_t whites = 0; // not written yet, fewer than five
    for (std::int32_t i = 0; from < row.columns; ++i) {
        std::int32_t pixels = changes[i] - from;
        from = changes[i];
        if (i % 2 == 0) {
            for (whites = pixels; whites >= static_cast<std::int32_t>(uncompressedWhites);
                 whites -= static_cast<std::int32_t>(uncompressedWhites)) {
                bits.put(1, uncompressedWhites + 1);
            }
        } else {
            bits.put(1, static_cast<unsigned>(whites) + 1);
            whites = 0;
            while (--pixels > 0) {
                bits.put(1, 1);
            }
        }
    }
    // The exit code, and white for the colour that the next row begins with.
    bits.put(0b10, uncompressedExitZeros + static_cast<unsigned>(whites) + 2);
}

} // namespace corvane
