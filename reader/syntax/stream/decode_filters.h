// The decoding filters by name, and what their parameters mean.
#pragma once

#include "reader/document/cache.h"

#include <string_view>

namespace corvane {

/// Links the filter of this name, full or abbreviated, on the chain. `parameters` are its
/// dictionary or null. A name that the profile does not know, and parameters of the wrong kind,
/// raise `range`.
void linkDecodeFilter(DocumentCache& cache, Chain& chain, std::string_view name,
                      const Object& parameters);

} // namespace corvane
