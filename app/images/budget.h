// How large the images of an SVG may be, and what reading them may take.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::image_budget {

/// Pixels of a side. A row of 16-bit colour with alpha then takes 8 MiB.
inline constexpr std::uint32_t longestSide = 1 << 20;
/// Pixels of an image, ten times what scanners of large maps give.
inline constexpr std::uint64_t mostPixels = std::uint64_t{1} << 32;
/// Bytes of an interlaced PNG's pixels: it can only be decoded whole.
inline constexpr std::uint64_t interlacedBytes = std::uint64_t{512} << 20;
/// Bytes of what stands around the pixels of a PNG: profiles and texts, which are of no use here.
inline constexpr std::size_t pngChunks = std::size_t{64} << 20;
/// Segments in front of a JPEG's frame; a large colour profile has some hundred.
inline constexpr int jpegSegments = 10'000;

} // namespace corvane::image_budget
