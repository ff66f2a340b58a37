// Bytes of the open file as they stand.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <string>

namespace corvane {

/// At most `count` bytes from `position` on, counted from the first byte of the file; fewer at the
/// end of the file, none before its start.
std::string bytesOfFile(DocumentCache& cache, std::int64_t position, std::int64_t count);

} // namespace corvane
