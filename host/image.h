// The records in which images pass between host and plug-in.
//
// A placed object (art of kind placed) shows an image in the unit square of its own space: the
// first row lies at y = 1, the first pixel of a row at x = 0. Its matrix leads from there to the
// artboard. Rows of samples are packed as in PNG: each begins with a new byte, samples of 16 bits
// have their high byte first, alpha is the last component of a pixel.
#pragma once

#include "host/artwork.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// An image that the host's document holds; 0 is null.
enum class Image : std::uint32_t { null = 0 };

enum class ImageCoding : std::uint8_t { samples = 0, jpeg = 1 };
/// Components of a pixel; of `indexed`, one number of a palette entry. CMYK comes in JPEG alone.
enum class ImageColours : std::uint8_t { gray = 0, rgb = 1, indexed = 2, cmyk = 3 };

struct ImageFacts {
    std::int32_t width = 0; ///< pixels, more than 0
    std::int32_t height = 0;
    ImageCoding coding = ImageCoding::samples;
    ImageColours colours = ImageColours::gray;
    std::int32_t bits = 8; ///< of a component: 1, 2, 4, 8, 16; RGB and what has alpha: 8, 16
    bool hasAlpha = false; ///< never of JPEG and of `indexed`
    /// Red, green, blue, alpha of each entry, 1 to 256 of them. Lives as long as the image.
    std::span<const std::uint8_t> palette = {};
    /// Which image of the page it is: the number of its object and a digest of all that decides
    /// what it looks like, as "12-0a1b2c3d4e5f6071"; letters, digits and hyphens, so that a file
    /// can have that name. The same key is the same image. Empty: it is not of a page.
    std::string_view key = {};
    bool isInverted = false; ///< of CMYK: 0 is full ink
    /// Its pixels could not be decoded: a frame with a cross stands for them.
    bool isPlaceholder = false;
};

/// What a placed object shows.
struct PlacedImage {
    Image image = Image::null;
    Matrix matrix = {};
    bool isSmooth = true; ///< pixels run into one another where they are enlarged
};

} // namespace corvane
