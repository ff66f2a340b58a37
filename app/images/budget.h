// How large the images of an SVG may be, and what reading them may take.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::image_budget {

/// Pixels of a side. A row of 16-bit colour with alpha then takes 8 MiB.
inline constexpr std::uint32_t longestSide = 1 << 20;
/// Pixels of an image, twice what scanners of large maps give. With the most that a pixel has they
/// are 8 GiB, which take a minute to deflate.
inline constexpr std::uint64_t mostPixels = std::uint64_t{1} << 30;
/// Bytes of a file; more than a PDF can hold.
inline constexpr std::uint64_t fileBytes = std::uint64_t{1} << 31;
/// Bytes of an interlaced PNG's pixels: it can only be decoded whole.
inline constexpr std::uint64_t interlacedBytes = std::uint64_t{512} << 20;
/// Bytes of what stands around the pixels of a PNG: profiles and texts, which are of no use here.
inline constexpr std::size_t pngChunks = std::size_t{64} << 20;
/// Bytes in which the frame of a JPEG is looked for: behind profiles, previews and notes, each of
/// up to 64 KiB.
inline constexpr std::size_t jpegLead = std::size_t{16} << 20;

} // namespace corvane::image_budget
