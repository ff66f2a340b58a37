// What the samples of an image mean.
#pragma once

#include "codecs/jpeg/jpeg_lead.h"
#include "codecs/jpx/header.h"
#include "reader/image/coded_image.h"
#include "reader/image/image_entries.h"
#include "reader/paint/colour_space.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

struct ImageForm {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bits = 8;           ///< of a sample: 1, 2, 4, 8, 16
    bool hasAlpha = false;           ///< a further sample of each pixel, behind its colours
    bool isStencil = false;          ///< of one bit: where to paint
    ColourSpacePointer space;        ///< never null
    std::vector<double> decode = {}; ///< two for each component; none: as usual for the space
    std::vector<std::int32_t> colourKey = {}; ///< likewise: samples that are transparent, or none

    std::int32_t components() const { return space->components; }
    std::int32_t samples() const { return components() + (hasAlpha ? 1 : 0); }
    std::int64_t rowBytes() const { return (std::int64_t{width} * samples() * bits + 7) / 8; }
    /// The values of a component's lowest and highest sample where there is no Decode.
    std::pair<double, double> usualDecode(std::size_t component) const;
    bool isUsualDecode() const;
};

/// An image that was looked at, but not decoded.
struct LookedImage {
    /// Raises where it cannot be decoded, as far as that shows without decoding it.
    LookedImage(DocumentCache& cache, const Object& object,
                std::optional<std::span<const std::byte>> data = std::nullopt);
    LookedImage(const LookedImage&) = delete;
    LookedImage& operator=(const LookedImage&) = delete;

    ImageEntries entries;
    CodedImage coded;
    HeldBytes held;                ///< of JPX: what is coded
    std::optional<JpegLead> jpeg;  ///< of DCT; it has a frame
    std::optional<JpxHeader> jpx;  ///< of JPX
    bool keepsPalette = false;     ///< of JPX: samples are indices of the space's own table
    std::int32_t dctTransform = 1; ///< of DCT: where its data state none
    ImageForm form;

private:
    void lookAtJpeg();
    void lookAtJpx();
    void readSpace();
    ColourSpacePointer namedSpace() const;
};

} // namespace corvane
