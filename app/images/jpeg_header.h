// What an image in a JPEG file is, by what stands in front of its samples.
#pragma once

#include "app/images/byte_source.h"
#include "codecs/jpeg/jpeg_lead.h"
#include "host/image.h"

#include <cstdint>
#include <optional>

namespace corvane {

struct JpegHeader {
    ImageFacts facts; ///< width and height as they are in the file
    Orientation orientation = upright;
    std::optional<std::uint64_t> scan; ///< bytes up to behind the marker of the first one
};

/// Throws `ImageError` where there is no frame, or one that pages cannot hold: of arithmetic
/// coding, without loss, of other than 8 bits.
JpegHeader readJpegHeader(const ByteSource& file);

/// Of a file that may be cut short.
Orientation exifOrientation(const ByteSource& file);

} // namespace corvane
