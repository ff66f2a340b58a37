// An image as it stands in a file: what it shows, and how it is read.
#pragma once

#include "app/artwork/images/image_store.h"
#include "app/images/byte_source.h"
#include "app/images/jpeg_header.h"
#include "host/image.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct ReadImage {
    ImageFacts facts;                  ///< without palette and key
    std::vector<std::uint8_t> palette; ///< as in `ImageFacts`
    Orientation orientation = upright;
    std::uint64_t digest = 0; ///< of the file
    bool isCutShort = false;  ///< a JPEG without its end; readers show what there is
    std::shared_ptr<const ImageContent> content;
};

/// Reads the header of a PNG or JPEG, and takes the digest of the file; none where it is of another
/// kind. `name` is for messages about its bytes; `pause` is called now and then, and may end the
/// reading by what it throws. Throws `ImageError`. A file that changes later than that is noticed
/// when its content is read.
std::optional<ReadImage> readImage(std::shared_ptr<const ByteOrigin> file, std::string name,
                                   const std::function<void()>& pause = {});

} // namespace corvane
