// Pages that no tree leads to.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Whether the dictionary says that it is a page.
bool isPageDictionary(DocumentCache& cache, const Object& dictionary);

/// Takes every object that says it is a page for one, in the order of their numbers: most writers
/// number pages as they make them, and the file's own order is lost where a cross-reference or an
/// object stream holds them.
void searchPages(DocumentCache& cache);

} // namespace corvane
