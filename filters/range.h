// The range filter: the bytes from one position to another of the filter below, as a stream.
#pragma once

#include "filters/filter.h"

namespace corvane {

struct RangeFilter : Filter {
    RangeFilter(std::int32_t first, std::int32_t last);

    std::int32_t start;
    std::int32_t end; ///< position after the last byte
    std::int32_t position;
};

/// A view of [start, end). Linking goes to `start` and raises `io` where that is not reached.
/// Positions are those of the filter below; seeking stays inside the view. The filter below may be
/// moved by others in between: the range goes back to its own place before it reads or writes.
FilterOwner setupRange(std::int32_t start, std::int32_t end);

} // namespace corvane
