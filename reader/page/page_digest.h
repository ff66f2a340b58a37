// A digest of what a page consists of, by which a later change is noticed.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <span>

namespace corvane {

/// The digest of the page's dictionary without PieceInfo and LastModified, of what it inherits, and
/// of its content streams as they stand in the file, in order. Of a stream that comes again, only
/// the place counts. Of references, the numbers count.
std::uint64_t digestPage(DocumentCache& cache, std::span<const ObjectOwner> streams);

} // namespace corvane
