// The buffer filter: turns many small reads and writes into a few large ones.
#pragma once

#include "filters/filter.h"
#include "runtime/memory.h"

#include <vector>

namespace corvane {

enum class Direction : std::int32_t { idle = 0, reading = 1, writing = 2 };

inline constexpr std::int32_t usualBufferSize = 8192;

struct BufferFilter : Filter {
    explicit BufferFilter(std::int32_t bytes);

    Direction direction = Direction::idle;
    std::int32_t size;
    std::int32_t fill = 0;     ///< reading: bytes held; writing: bytes waiting
    std::int32_t position = 0; ///< reading: next byte to hand out
    ZoneCharge charge;
    std::vector<std::byte> buffer;
};

/// A buffer of `size` bytes; 0: `usualBufferSize`. Unlinking writes what waits, or puts the filter
/// below just after the last byte handed out.
FilterOwner setupBuffer(std::int32_t size = 0);

} // namespace corvane
