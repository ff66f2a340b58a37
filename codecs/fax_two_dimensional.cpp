#include "codecs/fax_two_dimensional.h"

#include "codecs/fax_one_dimensional.h"
#include "codecs/fax_tables.h"

#include <cstdlib>

namespace corvane {

namespace {

// a0 is the position, a1 and a2 are the next two changes of the row, b1 is the first change of the
// row above behind a0 and to the other colour, b2 the one after it.

/// The number of b1, from any number of the right colour not above it. At the left edge the
/// imaginary a0 lies before the first pixel, so a change there is behind it.
inline std::int32_t findB1(const std::int32_t* above, std::int32_t b1, std::int32_t a0) {
    while (above[b1] <= a0) {
        b1 += 2;
    }
    return b1;
}

/// Where to look for b1 after a change that was told by it: the colour is another one, and a change
/// to the left of b1 may lie behind one of the row.
inline std::int32_t nextB1(std::int32_t b1, std::int32_t shift) {
    return shift < 0 ? b1 - 1 : b1 + 1;
}

/// Where decoding stands, in locals.
struct Modes {
    std::int32_t* changes;
    std::int32_t count;
    std::int32_t a0;
    std::int32_t columns;

    bool black() const { return count % 2 != 0; }
    void change() { count = FaxRow::changed(changes, count, a0); }

    /// The two runs of horizontal mode.
    FaxRowEnd horizontal(FaxBitReader& bits) {
        const bool first = black();
        for (const bool colour : {first, !first}) {
            const std::int32_t run = readRun(bits, colour, columns - a0);
            if (run < 0) {
                return run == -1 ? FaxRowEnd::noCode : FaxRowEnd::damaged;
            }
            a0 += run;
            change();
        }
        return FaxRowEnd::complete;
    }
};

} // namespace

FaxRowEnd Decompress2D(FaxBitReader& reader, const FaxRow& above, FaxRow& row) {
    FaxBitReader bits = reader;
    const std::int32_t* const changesAbove = above.changes();
    Modes modes{row.changes(), row.count, row.position, row.columns};
    std::int32_t b1 = row.reference;
    if ((b1 + modes.count) % 2 != 0) {
        --b1;
    }
    if (modes.a0 > 0) {
        b1 = findB1(changesAbove, b1, modes.a0);
    }
    FaxRowEnd end = FaxRowEnd::complete;
    while (modes.a0 < modes.columns && end == FaxRowEnd::complete) {
        bits.need(modeLookupBits);
        const FaxModeEntry entry = modeLookup[bits.peek(modeLookupBits)];
        bits.skip(entry.length);
        switch (entry.mode) {
        case FaxMode::vertical: {
            const std::int32_t a1 = changesAbove[b1] + entry.shift;
            if (a1 < modes.a0 || a1 > modes.columns) {
                end = FaxRowEnd::damaged;
                break;
            }
            modes.a0 = a1;
            modes.change();
            b1 = findB1(changesAbove, nextB1(b1, entry.shift), a1);
            break;
        }
        case FaxMode::horizontal:
            end = modes.horizontal(bits);
            b1 = findB1(changesAbove, b1, modes.a0);
            break;
        case FaxMode::pass:
            modes.a0 = changesAbove[b1 + 1];
            b1 += 2;
            break;
        case FaxMode::none:
            end = FaxRowEnd::noCode;
            break;
        }
    }
    reader = bits;
    row.count = modes.count;
    row.position = modes.a0;
    row.reference = b1;
    return end;
}

void Code2DCompressed(const FaxRow& above, const FaxRow& row, FaxRowBits& bits) {
    const std::int32_t* const changes = row.changes();
    const std::int32_t* const changesAbove = above.changes();
    const std::int32_t columns = row.columns;
    std::int32_t a0 = 0;
    std::int32_t a1 = 0; // the numbers of the changes
    std::int32_t b1 = 0;
    while (a0 < columns) {
        const std::int32_t place = changes[a1];
        const std::int32_t shift = place - changesAbove[b1];
        if (changesAbove[b1 + 1] < place) {
            bits.put(passCode);
            a0 = changesAbove[b1 + 1];
            b1 += 2;
        } else if (std::abs(shift) <= verticalReach) {
            bits.put(verticalCodes[static_cast<std::size_t>(shift + verticalReach)]);
            a0 = place;
            ++a1;
            b1 = findB1(changesAbove, nextB1(b1, shift), a0);
        } else {
            const bool black = a1 % 2 != 0;
            bits.put(horizontalCode);
            writeRun(bits, black, place - a0);
            writeRun(bits, !black, changes[a1 + 1] - place);
            a0 = changes[a1 + 1];
            a1 += 2;
            b1 = findB1(changesAbove, b1, a0);
        }
    }
}

} // namespace corvane
