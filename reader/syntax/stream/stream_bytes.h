// The decoded bytes of a short stream.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// At most `limit` bytes of a stream, decoded.
std::vector<std::uint8_t> streamBytes(DocumentCache& cache, const Object& stream,
                                      std::size_t limit);

} // namespace corvane
