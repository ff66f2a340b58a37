// What a document's outline calls its pages (PDF Reference, 8.2.2).
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <map>
#include <string>

namespace corvane {

/// Titles of the outline's first level, UTF-8, by the numbers of the pages' objects; of several for
/// a page, the first. Destinations that have names are not looked up.
std::map<std::int32_t, std::string> pageTitles(DocumentCache& cache);

} // namespace corvane
