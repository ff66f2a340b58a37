// The line "%ImageData" of an EPSF file, which says how its picture is stored, and its rows.
//
// The picture begins behind the first line that starts with the line's start string. Each row holds
// its components one after the other: all samples of the first, then all of the second; pad
// channels come last.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

enum class ImageDataForm : std::int32_t { binary = 1, hexadecimal = 2 };

struct ImageDataLine {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bits = 0;  ///< of a sample
    std::int32_t mode = 0;  ///< components: 1 gray, 3 RGB, 4 CMYK
    std::int32_t pads = 0;  ///< channels that mean nothing
    std::int32_t block = 0; ///< bytes of one channel of a row
    ImageDataForm form = ImageDataForm::binary;
    std::string start;

    /// Whether the picture is one that is read: of 1 bit gray, or 8 bits gray, RGB or CMYK; with
    /// sides that a codec can count and blocks of their size.
    bool isKnown() const;
    /// Of one that is read: bytes of a row in the file, and without its pads.
    std::size_t fileRow() const { return plane() * static_cast<std::size_t>(mode + pads); }
    std::size_t row() const { return plane() * static_cast<std::size_t>(mode); }

private:
    std::size_t plane() const { return static_cast<std::size_t>(block); }
};

/// What a line says, where it begins with "%ImageData" and holds seven integers and a string in
/// quotes behind a colon.
std::optional<ImageDataLine> imageDataLine(std::string_view line);

// From a row of planes to pixels: `pixels` has room for `count` of them, `planes` holds as many
// samples of each component.

void interleaveGray(std::span<std::byte> pixels, std::span<const std::byte> planes,
                    std::size_t count);
void interleaveRGB(std::span<std::byte> pixels, std::span<const std::byte> planes,
                   std::size_t count);
void interleaveCMYK(std::span<std::byte> pixels, std::span<const std::byte> planes,
                    std::size_t count);

} // namespace corvane
