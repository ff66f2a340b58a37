// What a JPEG file says of itself in front of its first scan (ISO/IEC 10918-1, annex B).
#pragma once

#include "filters/filter.h"

#include <array>
#include <cstdint>
#include <optional>

namespace corvane {

struct JpegFrame {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t components = 0;
    std::array<std::uint8_t, 4> identifiers{}; ///< of the components
    bool isUsual = false;   ///< baseline, extended or progressive, Huffman coded, samples of 8 bits
    bool isAtStart = false; ///< nothing stands in front of the file
    bool hasJfif = false;
    std::optional<std::int32_t> transform; ///< that an APP14 segment states
    bool isTurned = false;                 ///< its Exif data ask who shows it to turn it

    /// Whether readers that know no PDF, such as browsers, take three components for YCbCr.
    bool isYccAlone() const;
};

/// Reads the segments up to the first scan. None where there is no frame.
std::optional<JpegFrame> readJpegFrame(Filter& data);

} // namespace corvane
