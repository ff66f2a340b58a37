// The decoding filters that a stream names.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>

namespace corvane {

/// filter(s) parameters -> (nothing): links the decoding filter that the name at `index` asks for
/// on the chain. A name that no filter has raises `range`.
void filterUtility(DocumentCache& cache, Chain& chain, std::int32_t index);

/// Filters that a stream names: 0 without "Filter". More than the budget: `structure`.
std::int32_t countFilters(DocumentCache& cache, const Object& stream);
/// Links every decoding filter of a stream on the chain, which delivers its bytes as written.
void linkFilters(DocumentCache& cache, Chain& chain, const Object& stream);

} // namespace corvane
