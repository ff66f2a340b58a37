// One-dimensional coding, ITU-T T.4 4.1: runs of white and black in turn, white first.
#pragma once

#include "codecs/fax/bit_reader.h"
#include "codecs/fax/bit_writer.h"
#include "codecs/fax/row.h"
#include "codecs/fax/tables.h"

namespace corvane {

/// The length of a run, or -1: no code, and -2: longer than `longest`.
template <unsigned lookupBits, std::size_t size>
[[gnu::always_inline]] inline std::int32_t
readRun(FaxBitReader& reader, const std::array<FaxRunEntry, size>& table, std::int32_t longest) {
    std::int32_t run = 0;
    for (;;) {
        reader.need(lookupBits);
        const FaxRunEntry entry = table[reader.peek(lookupBits)];
        if (entry.length == 0) {
            return -1;
        }
        reader.skip(entry.length);
        run += entry.run;
        if (run > longest) {
            return -2;
        }
        if (entry.terminating) {
            return run;
        }
    }
}

[[gnu::always_inline]] inline std::int32_t readRun(FaxBitReader& reader, bool black,
                                                   std::int32_t longest) {
    return black ? readRun<blackLookupBits>(reader, blackLookup, longest)
                 : readRun<whiteLookupBits>(reader, whiteLookup, longest);
}

/// The lookup of a run of one colour and the next of the other.
inline const FaxPairLookup& pairLookup(bool black) {
    return black ? blackWhiteLookup : whiteBlackLookup;
}

inline void writeRun(FaxRowBits& bits, bool black, std::int32_t run) {
    const FaxRunCodes& codes = black ? blackCodes : whiteCodes;
    while (run >= longestMakeUp + 64) {
        bits.put(codes.makeUp.back());
        run -= longestMakeUp;
    }
    if (run >= 64) {
        bits.put(codes.makeUp[static_cast<std::size_t>(run / 64)]);
    }
    bits.put(codes.terminating[static_cast<std::size_t>(run % 64)]);
}

/// Decodes runs from where `row` stands up to its end.
FaxRowEnd Decompress1D(FaxBitReader& reader, FaxRow& row);

/// Codes a closed row.
void Code1DCompressed(const FaxRow& row, FaxRowBits& bits);

} // namespace corvane
