// The fax filter, "CCITTFaxDecode" and "CCF": rows of one bit a pixel from and to CCITT Group 3 and
// Group 4 data. PDF Reference, 3.3.5; ITU-T T.4 and T.6.
//
// A row is (columns + 7) / 8 bytes. Damaged data ends the rows early and raises nothing. Memory
// grows with the columns only.
#pragma once

#include "filters/filter.h"

#include <cstdint>

namespace corvane {

/// The entries of `DecodeParms`, with what holds where one is absent.
struct FaxParameters {
    std::int32_t direction = 0; ///< 0 decodes, 1 encodes
    std::int32_t k = 0;
    std::int32_t endOfLine = 0; ///< as all below that are true or false
    std::int32_t encodedByteAlign = 0;
    std::int32_t columns =
        1728;              ///< none, and too many, raise `codec`; original: the low 16 bits count
    std::int32_t rows = 0; ///< 0: until the data ends; original: the low 16 bits count
    std::int32_t endOfBlock = 1;
    std::int32_t blackIs1 = 0;
    std::int32_t damagedRowsBeforeError = 0;
};
static_assert(sizeof(FaxParameters) == 36);

/// Reads decoded rows or takes rows to encode; the other direction raises `io`. A decoder leaves
/// the filter below just behind its data, and delivers no more than `budget::streamBytes`
/// (`limit`): a byte of data may stand for 64 KiB of white rows. Unlinking an encoder ends its
/// data, and raises `io` where the filter below did not take all of it, `codec` where part of a row
/// is left over.
FilterOwner setupFax(const FaxParameters& parameters);

} // namespace corvane
