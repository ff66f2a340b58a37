// Finding the header at the front of a file and the newest cross-reference section at its end.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Notes where the header stands and its version. Offset 0 and no version where there is none:
/// whether a file is a PDF at all was decided before.
void locateHeader(DocumentCache& cache);

/// The offset of the newest cross-reference section. Raises `io` where the file is shorter than 256
/// bytes, `structure` where no number is found.
std::int32_t locateSection(DocumentCache& cache);

} // namespace corvane
