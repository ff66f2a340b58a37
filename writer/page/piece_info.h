// What programs note in a page for themselves (PDF Reference, 9.4): other programs' notes are
// carried over, ours says which page this is (reader/page/page_identity.h).
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_record.h"
#include "reader/syntax/raw_entries.h"
#include "writer/page/carried_entries.h"

#include <cstdint>
#include <span>

namespace corvane {

/// What our note says.
struct OriginNote {
    PageOrigin origin;
    std::int32_t page = 0;    ///< where the page object stands, by the cross-reference
    std::int32_t content = 0; ///< and its content stream
};

/// The notes of other programs among the entries of a page. Notes that cannot be read are
/// left out: they would make the new page unreadable too.
CarriedEntries notesOfOthers(DocumentCache& cache, std::span<const RawEntry> page);

/// Writes the LastModified and PieceInfo entries.
void writePieceInfo(DocumentCache& cache, const CarriedEntries& others, const OriginNote& note);

} // namespace corvane
