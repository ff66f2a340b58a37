// What programs note in a page for themselves (PDF Reference, 9.4): other programs' notes are
// carried over, ours is the record of the page (reader/page/page_record.h).
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_record.h"
#include "reader/syntax/raw_entries.h"
#include "writer/page/carried_entries.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

/// What the record says of the base.
struct CarriedBase {
    CarriedEntries content; ///< its Contents and Resources
    Box mediaBox;
    Box cropBox;
    std::uint64_t digest = 0; ///< `digestContent`
    bool isAsOpened = true;   ///< it is what the artwork was opened from
};

/// What our note says.
struct RecordNote {
    std::optional<PageOrigin> origin;
    std::optional<std::uint64_t> artwork;
    std::optional<std::uint64_t> update;
    std::int32_t page = 0;             ///< where the page object stands, by the cross-reference
    std::vector<std::int32_t> content; ///< and the content streams that are written
    std::vector<std::int32_t> made;    ///< numbers of all new objects that are written, ascending
    std::vector<std::int32_t> layers;  ///< optional content groups that were made for the artwork
    const CarriedBase* base = nullptr; ///< null: none
};

/// The notes of other programs among the entries of a page. Notes that cannot be read are
/// left out: they would make the new page unreadable too.
CarriedEntries notesOfOthers(DocumentCache& cache, std::span<const RawEntry> page);

/// Writes the LastModified and PieceInfo entries of the page object.
void writePieceInfo(DocumentCache& cache, ObjectIdentifier page, const CarriedEntries& others,
                    const RecordNote& note);

} // namespace corvane
