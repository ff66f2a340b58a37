// What stands in front of a JPEG's samples (ITU-T T.81, annex B; Exif 2.3, 4.6).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace corvane {

/// How the camera was held: the number of Exif's Orientation, 1 to 8. From 5 on width and height
/// change places.
using Orientation = int;
inline constexpr Orientation upright = 1;

/// What a frame is, as far as a decoder must know it.
enum class JpegKind : std::uint8_t {
    usual, ///< baseline, extended or progressive, Huffman coded, with samples of 8 bits
    deep,  ///< the same with 12 bits
    arithmetic,
    lossless,
    hierarchical,
};

struct JpegFrame {
    std::uint8_t marker = 0; ///< 0xC0 baseline, 0xC1 extended, 0xC2 progressive, and others
    std::int32_t bits = 0;   ///< of a sample
    std::int32_t width = 0;
    std::int32_t height = 0; ///< 0: stated behind the first scan
    std::int32_t components = 0;
    std::array<std::uint8_t, 4> identifiers{}; ///< of the components

    JpegKind kind() const;
    bool isUsual() const { return kind() == JpegKind::usual; }
};

struct JpegLead {
    std::optional<JpegFrame> frame;
    bool isAtStart = false; ///< nothing stands in front of the file
    bool hasJfif = false;
    std::optional<std::int32_t> transform; ///< that an APP14 segment states
    bool hasKnownTransform = false;        ///< the segment has the name that all readers heed
    Orientation orientation = upright;     ///< of the first segment of Exif data
    std::optional<std::uint64_t> scan;     ///< bytes up to behind the marker of the first scan

    /// Whether readers that know no PDF, such as browsers, take three components for YCbCr.
    bool isYccAlone() const;
};

/// Fills a block from where it was left; fewer bytes at the end of the data.
using JpegBytes = std::function<std::size_t(std::span<std::byte>)>;

/// Reads up to the first scan, but no more than `mostBytes`. Bytes between segments are passed
/// over. Where the data end early, what they hold counts.
JpegLead readJpegLead(const JpegBytes& data, std::size_t mostBytes);

} // namespace corvane
