// A digest of what a page consists of, by which a later change is noticed.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <span>

namespace corvane {

/// Of the page's dictionary but for PieceInfo and LastModified, of what it inherits, and of its
/// content streams as they stand in the file, in order; one that comes again counts by its place.
/// References count by their numbers.
std::uint64_t digestPage(DocumentCache& cache, std::span<const ObjectOwner> streams);

} // namespace corvane
