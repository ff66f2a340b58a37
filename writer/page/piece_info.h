// What programs note in a page for themselves (PDF Reference, 9.4): other programs' notes are
// carried over, ours says which page this is (reader/page/page_identity.h).
#pragma once

#include "reader/document/cache.h"
#include "reader/syntax/raw_entries.h"

#include <cstdint>
#include <span>

namespace corvane {

/// What our note says.
struct OriginNote {
    std::uint64_t origin = 0;
    std::int32_t page = 0;    ///< where the page object stands, by the cross-reference
    std::int32_t content = 0; ///< and its content stream
};

/// Writes one entry, its value in its own bytes, to the cache's output.
void rawEntryOutput(DocumentCache& cache, const RawEntry& entry);

/// Writes the LastModified and PieceInfo entries of a page that had these entries before.
void writePieceInfo(DocumentCache& cache, std::span<const RawEntry> formerPage,
                    const OriginNote& note);

} // namespace corvane
