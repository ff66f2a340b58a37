// Where a file begins whose header is not at its front.
#pragma once

#include "filters/filter.h"

#include <cstdint>
#include <optional>

namespace corvane {

/// Where the file begins that has objects and a trailer: offset of the header before the first
/// object; 0 where there is none. Nothing: the first `budget::headerBytes` hold no such things.
std::optional<std::int32_t> searchHeader(Filter& file);

} // namespace corvane
