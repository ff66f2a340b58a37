// The JBIG2 codec (ITU-T T.88), over jbig2dec: the embedded form that documents hold, one page of
// one bit a pixel.
#pragma once

#include "runtime/memory.h"
#include "runtime/work_meter.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

/// A page. Rows of (width + 7) / 8 bytes, 1 is black.
struct Jbig2Page {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::byte> rows;
    ZoneCharge charge;
};

/// Decodes the first page of `data`. `globals`: the segments that several pages share, or nothing.
/// Damage ends the page early, and what is missing is white. Data without a page, and damage in
/// front of all that is drawn, raise `codec`. The memory of the decoder is charged to the zone and
/// held against `budget::jbig2Bytes`; past it, it goes on as at damage. Time is held against
/// `clock`.
Jbig2Page decodeJbig2(std::span<const std::byte> globals, std::span<const std::byte> data,
                      CodecClock& clock);

} // namespace corvane
