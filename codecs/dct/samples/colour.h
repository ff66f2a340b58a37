// Between rows of components and rows of pixels, with the colour transform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

enum class DctColour : std::uint8_t {
    none,     ///< components are delivered as they are
    rgb,      ///< YCbCr to RGB
    inverted, ///< YCbCr to 255 less RGB: the first three of YCCK
};

/// What vectors may read behind a row of samples, and read or write behind one of pixels.
inline constexpr std::size_t dctRowSlack = 64;

/// `planes` (1 to 4 rows of `width` samples) to interleaved pixels (`DCTInitCT` chose `colour`).
void dctJoinRow(DctColour colour, std::span<const std::uint8_t* const> planes, std::size_t width,
                std::uint8_t* pixels);

/// Interleaved pixels to planes; with `toYcc` the first three components from RGB to YCbCr
/// (ITU-T T.871).
void dctSplitRow(bool toYcc, const std::uint8_t* pixels, std::size_t width,
                 std::span<std::uint8_t* const> planes);

} // namespace corvane
