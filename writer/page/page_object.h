// The page object that takes the place of the old one.
#pragma once

#include "reader/document/cache.h"
#include "writer/page/page_geometry.h"

#include <cstdint>

namespace corvane {

/// What a new page object says beside what it takes over from the old one.
struct PageParts {
    std::int32_t content = 0;      ///< number of the content stream
    std::int32_t contentPlace = 0; ///< where it stands, by the cross-reference
    PageGeometry geometry;
    std::uint64_t origin = 0; ///< identity of the page that the artwork was opened from
};

/// Writes the page in use, under its own number, to the cache's output. A page without a number of
/// its own raises `underflow`; a Parent, and in the original profile an Annots, that is no
/// reference raises `range`.
void writePageObject(DocumentCache& cache, const PageParts& parts);

} // namespace corvane
