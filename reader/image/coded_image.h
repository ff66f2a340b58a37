// The data of an image as they are coded: below the codec of images that comes last, if there is
// one.
#pragma once

#include "filters/filter.h"
#include "reader/image/image_entries.h"
#include "runtime/memory.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

enum class ImageCodec : std::uint8_t { none, fax, dct, jpx, jbig2 };

/// Bytes that were read into memory, charged to the zone.
struct HeldBytes {
    std::vector<std::byte> bytes;
    ZoneCharge charge;
};

class CodedImage {
public:
    /// `data`: of an inline image. Filters that no profile knows, and codecs of images in front of
    /// other filters, raise `range` here or when the data are opened.
    CodedImage(const ImageEntries& entries, std::optional<std::span<const std::byte>> data);

    ImageCodec codec() const { return codec_; }
    /// The codec's own; a dictionary or null.
    const Object& codecParameters() const { return parameters_.get(); }

    /// What the codec reads; of none, and of fax, what it delivers.
    Chain open() const;
    /// The same in memory. Past `budget::codedImageBytes`: `limit`.
    HeldBytes read() const;

private:
    ObjectOwner element(ImageKey key, std::int32_t index) const;

    const ImageEntries& entries_;
    std::optional<std::span<const std::byte>> data_;
    std::int32_t filters_ = 0; ///< below the codec
    ImageCodec codec_ = ImageCodec::none;
    ObjectOwner parameters_;
};

/// All that a chain delivers. Past `budget::codedImageBytes`: `limit`.
HeldBytes readAll(const Chain& chain);

} // namespace corvane
