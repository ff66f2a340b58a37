// The top of the output chain while an update is written: knows where in the file the next byte
// stands, and what was written.
#pragma once

#include "filters/filter.h"
#include "runtime/digest.h"
#include "writer/update/written_digest.h"

#include <cstdint>

namespace corvane {

struct UpdateFilter : Filter {
    UpdateFilter(std::int32_t updateStart, std::int32_t header);

    std::int32_t start;        ///< of the update, counted from the first byte of the file
    std::int32_t headerOffset; ///< marks are counted from the header, as every offset of the file
    std::int64_t count = 0;    ///< bytes written
    Digest digest;             ///< of those bytes
    WrittenDigest* written = nullptr; ///< fed, too, while a page is written
};

/// Writes through to the filter below, or only counts where there is none. What would make the file
/// longer than 2^31 - 1 bytes raises `fileTooLong` (original: `io`). Nothing is read, or sought.
FilterOwner setupUpdate(std::int32_t start, std::int32_t headerOffset);

} // namespace corvane
