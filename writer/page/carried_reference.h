// References that an update takes over from what it replaces.
#pragma once

#include "reader/document/cache.h"

#include <string_view>

namespace corvane {

/// Writes the entry `key` of `dictionary`, as a name and a reference, to the cache's output. What
/// is no reference raises `range`.
void carryReference(DocumentCache& cache, const Object& dictionary, std::string_view key);

} // namespace corvane
