#include "codecs/fax/two_dimensional.h"

#include "codecs/fax/one_dimensional.h"
#include "codecs/fax/tables.h"

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

/// The code at which `UsualCodes` stopped.
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

/// The codes of nearly every row. What they change is copied out of reader and row, so that it
/// stays in registers, and goes back when a row ends or another code stands there.
class UsualCodes {
public:
    [[gnu::always_inline]] UsualCodes(const FaxBitReader& reader, const FaxRow& above, FaxRow& row)
        : bits_(reader), above_(above.changes()), changes_(row.changes()), columns_(row.columns),
          count_(row.count), a0_(row.position), b1_(row.reference) {}

    /// Up to the end of the row, or to a code that adds no pixel, has long runs, or is wrong.
    [[gnu::always_inline]] void decode() {
        bool usual = true;
        while (usual && a0_ < columns_) {
            bits_.need(codeBits);
            usual = take(modeLookup[bits_.peek(modeLookupBits)]);
        }
    }
    [[gnu::always_inline]] void store(FaxBitReader& reader, FaxRow& row) const {
        reader = bits_;
        row.count = count_;
        row.position = a0_;
        row.reference = b1_;
    }

private:
    /// The longest code.
    static constexpr unsigned codeBits = horizontalCode.length + pairLookupBits;

    // Every mode has its own steps, with lengths and distances known when this is compiled: where a
    // mode is foretold right, nothing waits for a table. The modes that often follow themselves are
    // asked for before all others. False: the code is not usual, and still stands there.

    [[gnu::always_inline]] bool take(FaxMode mode) {
        switch (mode) {
        case FaxMode::same:
            do {
                if (!vertical<0>()) {
                    return false;
                }
            } while (again(verticalCodes[verticalReach]));
            return true;
        case FaxMode::left1:
            return vertical<-1>();
        case FaxMode::right1:
            return vertical<1>();
        case FaxMode::left2:
            return vertical<-2>();
        case FaxMode::right2:
            return vertical<2>();
        case FaxMode::left3:
            return vertical<-3>();
        case FaxMode::right3:
            return vertical<3>();
        case FaxMode::pass:
            do {
                pass();
            } while (again(passCode));
            return true;
        case FaxMode::horizontal:
            do {
                if (!horizontal()) {
                    return false;
                }
            } while (again(horizontalCode));
            return true;
        case FaxMode::none:
            return false;
        }
        return false;
    }

    template <std::int32_t shift>
    [[gnu::always_inline]] bool vertical() {
        const std::int32_t a1 = above_[b1_] + shift;
        if (a1 <= a0_ || a1 > columns_) [[unlikely]] {
            return false;
        }
        bits_.skip(verticalCodes[shift + verticalReach].length);
        changes_[count_++] = a1;
        a0_ = a1;
        // The colour changes, and a change to the left of b1 may lie behind a0.
        b1_ = findB1(above_, b1_ + (shift < 0 ? -1 : 1), a0_);
        return true;
    }

    [[gnu::always_inline]] void pass() {
        bits_.skip(passCode.length);
        a0_ = above_[b1_ + 1];
        b1_ += 2;
    }

    [[gnu::always_inline]] bool horizontal() {
        const FaxPairEntry pair =
            pairLookup(count_ % 2 != 0)[bits_.peek(codeBits) % (1U << pairLookupBits)];
        const std::int32_t pixels = pair.first() + pair.second();
        if (pixels == 0 || pixels > columns_ - a0_) [[unlikely]] {
            return false;
        }
        bits_.skip(horizontalCode.length + pair.length());
        changes_[count_] = a0_ + pair.first();
        a0_ += pixels;
        changes_[count_ + 1] = a0_;
        count_ += 2;
        b1_ = findB1(above_, b1_, a0_);
        return true;
    }

    /// Whether the row goes on with `code`.
    [[gnu::always_inline]] bool again(FaxCode code) {
        if (a0_ == columns_) {
            return false;
        }
        bits_.need(codeBits);
        return bits_.peek(code.length) == code.bits;
    }

    FaxBitReader bits_;
    const std::int32_t* above_;
    std::int32_t* changes_;
    std::int32_t columns_;
    std::int32_t count_;
    std::int32_t a0_;
    std::int32_t b1_;
};

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
        UsualCodes codes(reader, above, row);
        codes.decode();
        codes.store(reader, row);
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
