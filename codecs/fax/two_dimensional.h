// Two-dimensional coding, ITU-T T.4 4.2 and T.6 2.2: changes told by those of the row above.
#pragma once

#include "codecs/fax/bit_reader.h"
#include "codecs/fax/bit_writer.h"
#include "codecs/fax/row.h"

namespace corvane {

/// Decodes modes from where `row` stands up to its end. `above` is a closed row of the same width.
FaxRowEnd Decompress2D(FaxBitReader& reader, const FaxRow& above, FaxRow& row);

/// Codes a closed row.
void Code2DCompressed(const FaxRow& above, const FaxRow& row, FaxRowBits& bits);

} // namespace corvane
