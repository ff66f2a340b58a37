// Reads the pictures of EPSF files as opening a page writes them: binary samples behind an
// "%ImageData" line. PostScript is not run, so files of other programs mostly show nothing.
#pragma once

#include "app/artwork/images/image_store.h"
#include "app/images/byte_source.h"
#include "host/image.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace corvane {

struct EpsfPicture {
    ImageFacts facts;                  ///< without palette and key
    std::vector<std::uint8_t> palette; ///< of a mask: its colour, and nothing
    std::shared_ptr<const ImageContent> content;
};

/// None where the file holds no such picture: 1 bit, taken for a mask, or 8 bits gray or RGB.
/// Throws `ImageError` where the file cannot be read.
std::optional<EpsfPicture> readEpsf(std::shared_ptr<const ByteOrigin> file);

} // namespace corvane
