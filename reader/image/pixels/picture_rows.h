// The rows of an image as the host gets them: pixels, with alpha beside them where there is some.
#pragma once

#include "host/image.h"
#include "reader/image/pixels/pixel_conversion.h"
#include "reader/image/pixels/sample_rows.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

/// Rows of samples that are read one by one, each put to pixels. Where the data end or fail, what
/// is missing is empty.
class RowReader {
public:
    RowReader(const LookedImage& image, PixelConversion conversion);

    std::int32_t width() const { return image_.form.width; }
    std::int32_t height() const { return image_.form.height; }
    PixelConversion& conversion() { return conversion_; }

    /// Makes row `y` the one at hand; rows are only gone forward to.
    void seek(std::int32_t y);
    std::span<const std::byte> samples() const { return row_; }
    bool isMissing() const { return isMissing_; }
    /// Several rows as they are, where the conversion keeps rows. Missing ones are not delivered.
    std::size_t readRows(std::span<std::byte> rows);

private:
    std::size_t read(std::span<std::byte> rows);

    const LookedImage& image_;
    PixelConversion conversion_;
    std::unique_ptr<SampleRows> samples_;
    ZoneCharge charge_;
    std::vector<std::byte> row_;
    std::int64_t y_ = -1;
    bool isMissing_ = false;
    bool isEnded_ = false;
};

/// A mask beside an image.
struct AlphaImage {
    AlphaImage(DocumentCache& cache, const Object& stream, bool isStencil);

    ObjectOwner stream;
    std::unique_ptr<LookedImage> image;
};

/// An image with all that it is made of, not decoded yet.
class Picture {
public:
    /// Raises where it cannot be decoded, as far as that shows now.
    Picture(DocumentCache& cache, const Object& object,
            std::optional<std::span<const std::byte>> data, SeenColour fill);
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    /// Without a key. The palette lives as long as the picture.
    ImageFacts facts() const;
    /// Whether it is a JPEG file that is shown as it is.
    bool isJpegAsItIs() const { return isJpeg_; }
    const LookedImage& image() const { return image_; }
    /// Bytes of all rows.
    std::int64_t bytes() const { return rowBytes() * height_; }

    /// Hands its rows to `use`, several at a time. Raises `codec` where there is nothing to show.
    template <class Use>
    void forEachBlock(Use&& use) {
        begin();
        while (fillBlock()) {
            use(std::span<const std::byte>(block_));
        }
    }

private:
    void findAlpha();
    void growToMask(const ImageForm& mask);
    void readMatte(const ImageEntries& entries);
    void findColourKey();
    bool isShownByBrowsers() const;
    std::int64_t rowBytes() const;
    void begin();
    bool fillBlock();
    void fillRow(std::span<std::byte> out);
    void fillAlpha(std::int32_t y);
    void join(std::span<std::byte> out) const;
    void undoMatte(std::span<std::byte> out) const;
    void checkMissing() const;

    DocumentCache& cache_;
    LookedImage image_;
    std::unique_ptr<AlphaImage> alphaImage_;
    bool hasAlpha_ = false;
    bool isJpeg_ = false;
    std::optional<SeenColour> matte_; ///< what the colours were mixed with
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::optional<PixelConversion> conversion_;

    std::optional<RowReader> colours_;
    std::optional<RowReader> alphas_;
    ZoneCharge charge_;
    std::vector<std::byte> block_;
    std::vector<std::byte> pixels_;   ///< of the row at hand
    std::vector<std::uint8_t> alpha_; ///< likewise, of the image or of its mask
    std::vector<std::byte> alphaRow_; ///< pixels of the mask
    std::vector<std::size_t> across_; ///< for each pixel, that of the image
    std::vector<std::size_t> alphaAcross_;
    std::int64_t coloursAt_ = -1; ///< row that `pixels_` is
    std::int64_t alphaAt_ = -1;
    std::int32_t y_ = 0;
};

} // namespace corvane
