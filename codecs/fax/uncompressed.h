// The uncompressed mode, ITU-T T.4 4.2.4 and T.6 2.2.5: pixels nearly as they are.
#pragma once

#include "codecs/fax/bit_reader.h"
#include "codecs/fax/bit_writer.h"
#include "codecs/fax/row.h"

namespace corvane {

/// Decodes pixels from where `row` stands until its end, or until the exit code: `left`.
/// `mayEndInside`: a complete row needs no exit code behind it; where there is one it is taken.
/// `inside` tells afterwards whether the mode is still on.
FaxRowEnd DecompressUnc(FaxBitReader& reader, FaxRow& row, bool mayEndInside, bool& inside);

/// CECodeLineWithUnc: the pixels of a closed row and the exit code.
void CodeUncompressed(const FaxRow& row, FaxRowBits& bits);

} // namespace corvane
