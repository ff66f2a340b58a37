// Finding the header at the front of a file and the newest cross-reference section at its end.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>

namespace corvane {

/// Bytes that a file has at least.
std::int32_t shortestFile();

/// Notes where the header stands and its version. Offset 0 and no version where there is none:
/// whether a file is a PDF at all was decided before.
void locateHeader(DocumentCache& cache);

/// The offset of the newest cross-reference section of a file that has, or once had, this `length`.
/// Raises `io` where that is less than `shortestFile`, `structure` where no number is found.
std::int32_t locateSection(DocumentCache& cache, std::int32_t length);

} // namespace corvane
