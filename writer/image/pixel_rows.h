// Rows of pixels, as the host has them and as they are written.
#pragma once

#include "host/image.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

/// Components and bits of the pixels of a row.
struct PixelForm {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t components = 1; ///< alpha among them
    std::int32_t bits = 8;

    std::size_t rowBytes() const {
        return (static_cast<std::size_t>(width) * static_cast<std::size_t>(components * bits) + 7) /
               8;
    }
    std::size_t sampleBytes() const { return static_cast<std::size_t>(bits) / 8; }
};

/// Of an image of samples. What no image has raises `range`.
PixelForm pixelForm(const ImageFacts& facts);

/// The rows of an image, from the top.
class PixelRows {
public:
    /// Raises `host` where the host has no bytes of it.
    PixelRows(Image image, const PixelForm& form);

    /// The next row, valid until the next call. Raises `host` where there is none, and `cancelled`
    /// where the person wants to stop.
    std::span<const std::byte> next();

private:
    Image image_;
    std::vector<std::byte> rows_;
    std::size_t rowBytes_;
    std::size_t at_ = 0;
    std::size_t held_ = 0;
};

/// What can be left out of an image.
struct PixelContents {
    bool isGray = true;   ///< red, green and blue are the same in every pixel
    bool isOpaque = true; ///< so is every pixel
};

/// Looks at all pixels that have to be looked at.
PixelContents examinePixels(Image image, const ImageFacts& facts);

/// PNG's filters (PNG, 9): chooses for each row the one that leaves the smallest numbers.
class RowPredictor {
public:
    explicit RowPredictor(const PixelForm& form);

    /// The row behind the number of its filter, valid until the next call.
    std::span<const std::byte> predict(std::span<const std::byte> row);

private:
    std::size_t pixelBytes_; ///< distance to the sample on the left
    bool isPacked_;          ///< several samples in a byte: differences say nothing
    std::vector<std::byte> above_;
    std::vector<std::byte> best_;
    std::vector<std::byte> tried_;
};

} // namespace corvane
