// Where a file begins whose header is not at its front.
#pragma once

#include "filters/filter.h"

#include <cstdint>
#include <optional>

namespace corvane {

/// Offset of the header, if no object stands before it; 0 where there are objects and a trailer and
/// no header. Nothing: the file holds no such things in its first `budget::headerBytes`.
std::optional<std::int32_t> searchHeader(Filter& file);

} // namespace corvane
