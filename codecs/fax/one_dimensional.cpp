#include "codecs/fax/one_dimensional.h"

namespace corvane {

FaxRowEnd Decompress1D(FaxBitReader& reader, FaxRow& row) {
    FaxBitReader bits = reader;
    std::int32_t* const changes = row.changes();
    const std::int32_t columns = row.columns;
    std::int32_t count = row.count;
    std::int32_t position = row.position;
    FaxRowEnd end = FaxRowEnd::complete;
    while (position < columns) {
        const bool black = count % 2 != 0;
        bits.need(pairLookupBits);
        const FaxPairEntry pair = pairLookup(black)[bits.peek(pairLookupBits)];
        const std::int32_t pixels = pair.first() + pair.second();
        if (pixels != 0 && pixels <= columns - position) {
            bits.skip(pair.length());
            changes[count] = position + pair.first();
            position += pixels;
            changes[count + 1] = position;
            count += 2;
            continue;
        }
        const std::int32_t run = readRun(bits, black, columns - position);
        if (run < 0) {
            end = run == -1 ? FaxRowEnd::noCode : FaxRowEnd::damaged;
            break;
        }
        position += run;
        count = FaxRow::changed(changes, count, position);
    }
    reader = bits;
    row.count = count;
    row.position = position;
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
