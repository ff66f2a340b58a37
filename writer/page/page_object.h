// The page object that takes the place of the old one.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_record.h"
#include "writer/page/carried_entries.h"
#include "writer/page/page_geometry.h"

#include <cstdint>

namespace corvane {

/// What a new page object takes over from the old one.
struct CarriedPage {
    CarriedEntries entries;
    CarriedEntries notes; ///< of other programs, in PieceInfo
};

/// Raises where the page in use cannot be replaced: it has no number of its own (original:
/// `underflow`, extended: `structure`), or its Parent or Annots is no reference (original:
/// `range`). Extended keeps those as they are, a missing Parent too: a page inherits through it,
/// and another Parent than it had could turn the page.
CarriedPage carriedPage(DocumentCache& cache, const PageGeometry& geometry);

/// What a new page object says beside.
struct PageParts {
    std::int32_t content = 0;      ///< number of the content stream
    std::int32_t contentPlace = 0; ///< where it stands, by the cross-reference
    PageOrigin origin;             ///< identity of the page that the artwork was opened from
};

/// Writes the page in use, under its own number, to the cache's output.
void writePageObject(DocumentCache& cache, const CarriedPage& carried, const PageGeometry& geometry,
                     const PageParts& parts);

} // namespace corvane
