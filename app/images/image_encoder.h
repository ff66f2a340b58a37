// Makes the file of an image from the bytes that the plug-in gives: samples become PNG, JPEG stays.
#pragma once

#include "app/images/byte_sink.h"
#include "app/images/jpeg_header.h"
#include "app/images/png_writer.h"
#include "host/image.h"
#include "runtime/digest.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

namespace corvane {

class ImageEncoder {
public:
    ImageEncoder(const ImageFacts&, ByteSink&);

    /// The first failure of the sink. Throws `ImageError` where the bytes are not those of the
    /// image.
    std::error_code add(std::span<const std::byte> bytes);
    std::error_code end();

    /// Of the file, once it has ended.
    std::uint64_t digest() const;
    /// Of a JPEG, as far as its first bytes say.
    Orientation orientation() const;

private:
    /// Exif is the first segment of a file, and a segment has 64 KiB at most.
    static constexpr std::size_t headSize = std::size_t{68} << 10;

    ByteSink& sink_;
    std::optional<PngWriter> png_;
    Digest digest_;
    std::vector<std::byte> head_; ///< of a JPEG
};

} // namespace corvane
