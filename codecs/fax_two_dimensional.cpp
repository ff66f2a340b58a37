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

/// The two runs of horizontal mode, whatever their length.
FaxRowEnd readLongRuns(FaxBitReader& reader, FaxRow& row) {
    const bool first = row.black();
    for (const bool black : {first, !first}) {
        const std::int32_t run = readRun(reader, black, row.columns - row.position);
        if (run < 0) {
            return run == -1 ? FaxRowEnd::noCode : FaxRowEnd::damaged;
        }
        row.position += run;
        row.change();
    }
    return FaxRowEnd::complete;
}

/// Vertical mode that adds no pixel to the row: at its left edge, or where a run is empty.
FaxRowEnd takeEmptyRun(FaxRow& row, std::int32_t a1) {
    if (a1 != row.position) {
        return FaxRowEnd::damaged;
    }
    row.change();
    return FaxRowEnd::complete;
}

} // namespace

FaxRowEnd Decompress2D(FaxBitReader& reader, const FaxRow& above, FaxRow& row) {
    FaxBitReader bits = reader;
    const std::int32_t* const changesAbove = above.changes();
    std::int32_t* const changes = row.changes();
    const std::int32_t columns = row.columns;
    std::int32_t count = row.count;
    std::int32_t a0 = row.position;
    std::int32_t b1 = row.reference;
    // What is seldom works on the row and the reader themselves.
    const auto aside = [&](auto&& step) {
        reader = bits;
        row.count = count;
        row.position = a0;
        const FaxRowEnd end = step();
        bits = reader;
        count = row.count;
        a0 = row.position;
        return end;
    };
    if ((b1 + count) % 2 != 0) {
        --b1;
    }
    if (a0 > 0 || count > 0) {
        b1 = findB1(changesAbove, b1, a0);
    }
    FaxRowEnd end = FaxRowEnd::complete;
    while (a0 < columns && end == FaxRowEnd::complete) {
        bits.need(modeLookupBits);
        const FaxModeEntry entry = modeLookup[bits.peek(modeLookupBits)];
        bits.skip(entry.length);
        if (entry.mode == FaxMode::vertical) [[likely]] {
            const std::int32_t a1 = changesAbove[b1] + entry.shift;
            if (a1 > a0 && a1 <= columns) [[likely]] {
                changes[count++] = a1;
                a0 = a1;
            } else {
                end = aside([&] { return takeEmptyRun(row, a1); });
            }
            b1 = findB1(changesAbove, b1 + entry.step, a0);
        } else if (entry.mode == FaxMode::pass) {
            a0 = changesAbove[b1 + 1];
            b1 += 2;
        } else if (entry.mode == FaxMode::horizontal) {
            bits.need(pairLookupBits);
            const FaxPairEntry pair = pairLookup(count % 2 != 0)[bits.peek(pairLookupBits)];
            const std::int32_t pixels = pair.first() + pair.second();
            if (pair.first() * pair.second() != 0 && pixels <= columns - a0) [[likely]] {
                bits.skip(pair.length());
                changes[count] = a0 + pair.first();
                a0 += pixels;
                changes[count + 1] = a0;
                count += 2;
            } else {
                end = aside([&] { return readLongRuns(reader, row); });
            }
            b1 = findB1(changesAbove, b1, a0);
        } else {
            end = FaxRowEnd::noCode;
        }
    }
    reader = bits;
    row.count = count;
    row.position = a0;
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
            const std::int32_t code = shift + verticalReach;
            bits.put(verticalCodes[static_cast<std::size_t>(code)]);
            a0 = place;
            ++a1;
            b1 = findB1(changesAbove, shift < 0 ? b1 - 1 : b1 + 1, a0);
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
