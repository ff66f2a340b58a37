#include "codecs/fax_one_dimensional.h"

namespace corvane {

namespace {

FaxRowEnd readOneRun(FaxBitReader& reader, FaxRow& row) {
    const std::int32_t run = readRun(reader, row.black(), row.columns - row.position);
    if (run < 0) {
        return run == -1 ? FaxRowEnd::noCode : FaxRowEnd::damaged;
    }
    row.position += run;
    row.change();
    return FaxRowEnd::complete;
}

} // namespace

FaxRowEnd Decompress1D(FaxBitReader& reader, FaxRow& row) {
    std::int32_t* const changes = row.changes();
    const std::int32_t columns = row.columns;
    FaxRowEnd end = FaxRowEnd::complete;
    while (row.position < columns && end == FaxRowEnd::complete) {
        FaxBitReader bits = reader;
        std::int32_t count = row.count;
        std::int32_t position = row.position;
        const FaxPairLookup& pairs = pairLookup(row.black());
        for (;;) {
            bits.need(pairLookupBits);
            const FaxPairEntry pair = pairs[bits.peek(pairLookupBits)];
            const std::int32_t pixels = pair.first() + pair.second();
            if (pair.first() * pair.second() == 0 || pixels > columns - position) {
                break;
            }
            bits.skip(pair.length());
            changes[count] = position + pair.first();
            position += pixels;
            changes[count + 1] = position;
            count += 2;
        }
        reader = bits;
        row.count = count;
        row.position = position;
        if (position < columns) {
            end = readOneRun(reader, row);
        }
    }
    return end;
}

void Code1DCompressed(const FaxRow& row, FaxRowBits& bits) {
    const std::int32_t* const changes = row.changes();
    std::int32_t from = 0;
    for (std::int32_t i = 0; from < row.columns; ++i) {
        writeRun(bits, i % 2 != 0, changes[i] - from);
        from = changes[i];
    }
}

} // namespace corvane
