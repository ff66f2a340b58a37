// What a JPEG 2000 file says before it is decoded (ISO/IEC 15444-1, annexes A and I).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane {

enum class JpxColours : std::uint8_t { unstated, gray, rgb, cmyk };

struct JpxHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t colours = 1; ///< components without alpha, a palette applied
    std::uint32_t stored = 1;  ///< components that are coded
    bool hasAlpha = false;
    bool isPremultiplied = false; ///< its colours hold their alpha already
    std::uint32_t bits = 8;       ///< of the deepest component, a palette applied
    JpxColours space = JpxColours::unstated;
    std::int64_t records = 0; ///< precincts and code blocks, which take memory before they are read
};

/// The header of a JP2 file or of a bare codestream. `keepsPalette`: indices stay what they are.
/// Nothing where it has none, or claims what no picture has: more than 2^31 - 1 pixels, and more
/// tiles, components, precincts, packets or samples than the budgets.
std::optional<JpxHeader> readJpxHeader(std::span<const std::byte> file, bool keepsPalette);

} // namespace corvane
