// The page object that takes the place of the old one.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_base.h"
#include "reader/page/page_record.h"
#include "writer/page/carried_entries.h"
#include "writer/page/page_geometry.h"
#include "writer/page/piece_info.h"
#include "writer/page/resource_registry.h"
#include "writer/update/written_digest.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

/// What a new page object takes over from the old one.
struct CarriedPage {
    CarriedEntries entries;
    CarriedEntries notes;            ///< of other programs, in PieceInfo
    std::optional<CarriedBase> base; ///< for the record
    CarriedEntries resources;        ///< the base's own, for content that goes on using them
};

/// Raises where the page in use cannot be replaced: it has no number of its own (original:
/// `underflow`, extended: `structure`), or its Parent or Annots is no reference (original:
/// `range`). Extended keeps those as they are, a missing Parent too: a page inherits through it,
/// and another Parent than it had could turn the page. `base` may be null.
CarriedPage carriedPage(DocumentCache& cache, const PageGeometry& geometry, const PageBase* base);

/// A content stream of the new page.
struct ContentPart {
    std::int32_t number = 0;
    std::int32_t generation = 0;
    std::optional<std::int32_t> place; ///< where this update wrote it, by the cross-reference
};

/// What a new page object says beside.
struct PageParts {
    std::vector<ContentPart> contents;
    /// Those of the base, and what was added to them; null: what the art walk met.
    const ResourceRegistry* resources = nullptr;
    std::optional<PageOrigin> origin;     ///< of the page that the artwork was opened from
    std::optional<std::uint64_t> artwork; ///< which opening of it that was
    std::vector<std::int32_t> layers;     ///< optional content groups that were made for it
    std::int32_t firstNew = 0;            ///< objects from this number on are new
    WrittenDigest* written = nullptr;     ///< fed with what was written so far; null: no record
};

/// Writes the page in use, under its own number, to the cache's output.
void writePageObject(DocumentCache& cache, const CarriedPage& carried, const PageGeometry& geometry,
                     const PageParts& parts);

} // namespace corvane
