// Finding the objects of a file whose cross-reference cannot be used.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Searches the whole file for objects ("12 0 obj"; of several with one number the last counts) and
/// for a trailer, or else a catalog. Before the call the reference table is empty, and there is no
/// trailer. Raises `structure` where there is no catalog to be found.
void repairCache(DocumentCache& cache);

} // namespace corvane
