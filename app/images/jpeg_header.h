// What stands in front of a JPEG's samples (ITU-T T.81, annex B; Exif 2.3, 4.6).
#pragma once

#include "app/images/byte_source.h"
#include "host/image.h"

namespace corvane {

/// How the camera was held: the number of Exif's Orientation, 1 to 8. From 5 on width and height
/// change places.
using Orientation = int;
inline constexpr Orientation upright = 1;

struct JpegHeader {
    ImageFacts facts; ///< width and height as they are in the file
    Orientation orientation = upright;
};

/// Throws `ImageError` where there is no frame, or one that pages cannot hold: of arithmetic
/// coding, without loss, of other than 8 bits.
JpegHeader readJpegHeader(const ByteSource& file);

/// Of a file that may be cut short.
Orientation exifOrientation(const ByteSource& file);

} // namespace corvane
