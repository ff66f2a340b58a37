#include "codecs/fax/two_dimensional.h"

#include "codecs/fax/one_dimensional.h"
#include "codecs/fax/tables.h"

#include <cstdlib>
#include <type_traits>

namespace corvane {

namespace {

// a0 is the position, a1 and a2 are the next two changes of the row, b1 is the first change of the
// row above behind a0 and to the other colour, b2 the one after it.

template <std::int32_t shift>
constexpr std::integral_constant<std::int32_t, shift> by;

/// The number of b1, from any number of the right colour not above it. At the left edge the
/// imaginary a0 lies before the first pixel, so a change there is behind it.
inline std::int32_t findB1(const std::int32_t* above, std::int32_t b1, std::int32_t a0) {
    while (above[b1] <= a0) {
        b1 += 2;
    }
    return b1;
}

/// Vertical mode that adds no pixel to the row: at its left edge, or where a run is empty.
FaxRowEnd takeEmptyRun(FaxRow& row, std::int32_t a1) {
    if (a1 != row.position) {
        return FaxRowEnd::damaged;
    }
    row.change();
    return FaxRowEnd::complete;
}

/// The two runs of horizontal mode, whatever their length.
FaxRowEnd readTwoRuns(FaxBitReader& reader, FaxRow& row) {
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

/// The code at which `usualCodes` stopped.
FaxRowEnd otherCode(FaxBitReader& reader, const FaxRow& above, FaxRow& row) {
    reader.need(modeLookupBits);
    const FaxMode mode = modeLookup[reader.peek(modeLookupBits)];
    const auto number = static_cast<std::size_t>(mode) - static_cast<std::size_t>(FaxMode::left3);
    FaxRowEnd end = FaxRowEnd::noCode;
    if (mode == FaxMode::horizontal) {
        reader.skip(horizontalCode.length);
        end = readTwoRuns(reader, row);
    } else if (number < verticalCodes.size()) {
        reader.skip(verticalCodes[number].length);
        const std::int32_t shift = static_cast<std::int32_t>(number) - verticalReach;
        end = takeEmptyRun(row, above.changes()[row.reference] + shift);
        row.reference += shift < 0 ? -1 : 1;
    }
    row.reference = findB1(above.changes(), row.reference, row.position);
    return end;
}

/// Decodes up to the end of the row or to a code that adds no pixel, has long runs, or is wrong.
void usualCodes(FaxBitReader& reader, const FaxRow& above, FaxRow& row) {
    FaxBitReader bits = reader;
    const std::int32_t* const changesAbove = above.changes();
    std::int32_t* const changes = row.changes();
    const std::int32_t columns = row.columns;
    std::int32_t count = row.count;
    std::int32_t a0 = row.position;
    std::int32_t b1 = row.reference;
    // Every mode has its own steps, with lengths and distances known when this is compiled: where a
    // mode is foretold right, nothing waits for a table.
    const auto vertical = [&]<std::int32_t shift>(std::integral_constant<std::int32_t, shift>) {
        const std::int32_t a1 = changesAbove[b1] + shift;
        if (a1 <= a0 || a1 > columns) [[unlikely]] {
            return false;
        }
        bits.skip(verticalCodes[shift + verticalReach].length);
        changes[count++] = a1;
        a0 = a1;
        // The colour changes, and a change to the left of b1 may lie behind a0.
        b1 = findB1(changesAbove, b1 + (shift < 0 ? -1 : 1), a0);
        return true;
    };
    const auto pass = [&] {
        bits.skip(passCode.length);
        a0 = changesAbove[b1 + 1];
        b1 += 2;
    };
    const auto horizontal = [&] {
        constexpr unsigned both = horizontalCode.length + pairLookupBits;
        const FaxPairEntry pair =
            pairLookup(count % 2 != 0)[bits.peek(both) % (1U << pairLookupBits)];
        const std::int32_t pixels = pair.first() + pair.second();
        if (pixels == 0 || pixels > columns - a0) [[unlikely]] {
            return false;
        }
        bits.skip(horizontalCode.length + pair.length());
        changes[count] = a0 + pair.first();
        a0 += pixels;
        changes[count + 1] = a0;
        count += 2;
        b1 = findB1(changesAbove, b1, a0);
        return true;
    };
    // The modes that often follow themselves are asked for before all others.
    const auto again = [&](FaxCode code) {
        if (a0 == columns) {
            return false;
        }
        bits.need(horizontalCode.length + pairLookupBits);
        return bits.peek(code.length) == code.bits;
    };
    for (bool usual = true; usual && a0 < columns;) {
        bits.need(horizontalCode.length + pairLookupBits);
        switch (modeLookup[bits.peek(modeLookupBits)]) {
        case FaxMode::same:
            do {
                usual = vertical(by<0>);
            } while (usual && again(verticalCodes[verticalReach]));
            break;
        case FaxMode::left1:
            usual = vertical(by<-1>);
            break;
        case FaxMode::right1:
            usual = vertical(by<1>);
            break;
        case FaxMode::left2:
            usual = vertical(by<-2>);
            break;
        case FaxMode::right2:
            usual = vertical(by<2>);
            break;
        case FaxMode::left3:
            usual = vertical(by<-3>);
            break;
        case FaxMode::right3:
            usual = vertical(by<3>);
            break;
        case FaxMode::pass:
            do {
                pass();
            } while (again(passCode));
            break;
        case FaxMode::horizontal:
            do {
                usual = horizontal();
            } while (usual && again(horizontalCode));
            break;
        case FaxMode::none:
            usual = false;
            break;
        }
    }
    reader = bits;
    row.count = count;
    row.position = a0;
    row.reference = b1;
}

} // namespace

FaxRowEnd Decompress2D(FaxBitReader& reader, const FaxRow& above, FaxRow& row) {
    if ((row.reference + row.count) % 2 != 0) {
        --row.reference;
    }
    if (row.position > 0 || row.count > 0) {
        row.reference = findB1(above.changes(), row.reference, row.position);
    }
    FaxRowEnd end = FaxRowEnd::complete;
    while (row.position < row.columns && end == FaxRowEnd::complete) {
        usualCodes(reader, above, row);
        if (row.position < row.columns) {
            end = otherCode(reader, above, row);
        }
    }
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
