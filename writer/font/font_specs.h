// What the font database says of the shapes of a font, for its descriptor.
#pragma once

#include "host/artwork.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// Lengths in ems, the angle in thousands of degrees: what is written are thousandths of both.
struct FontSpecs {
    Fixed stemV = 0;
    Fixed stemH = 0;
    Fixed xHeight = 0;
    Fixed capHeight = 0;
    Fixed italicAngle = 0;
    std::int32_t flags = 0; ///< of the descriptor
};

/// Flag of fonts of signs (PDF Reference, 5.7.1).
inline constexpr std::int32_t symbolicFont = 1 << 2;

// By the name of a font of the host and its two identifiers (`FontInfo`): from its program, from
// the tables of an OpenType file, or measured. Nothing where that does not tell.
std::optional<FontSpecs> specsType0(std::string_view name, std::int16_t first, std::int16_t second);
std::optional<FontSpecs> specsType1(std::string_view name, std::int16_t first, std::int16_t second);
std::optional<FontSpecs> specsType2(std::string_view name, std::int16_t first, std::int16_t second);

} // namespace corvane
