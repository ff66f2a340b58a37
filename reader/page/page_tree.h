// The walk of the page tree.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Lists the pages, once. The tree is followed by its Kids, never by a Count. A loop, and a tree
/// deeper than the budget, raise `structure`; a Kids entry that is no node raises `range`
/// (extended: skipped).
void walkPages(DocumentCache& cache);

} // namespace corvane
