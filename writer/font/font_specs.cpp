#include "writer/font/font_specs.h"

#include "host/fonts.h"
#include "runtime/fixed.h"

namespace corvane {

namespace {

/// Flags of a font descriptor (PDF Reference, 5.7.1).
constexpr std::int32_t fixedPitch = 1 << 0;
constexpr std::int32_t serif = 1 << 1;
constexpr std::int32_t nonsymbolic = 1 << 5;
constexpr std::int32_t italic = 1 << 6;

std::int32_t flagsOf(const FontSpecification& font) {
    return (font.isFixedPitch ? fixedPitch : 0) | (font.isSerif ? serif : 0) |
           (font.isSymbolic ? symbolicFont : nonsymbolic) | (font.isItalic ? italic : 0);
}

/// `name` is for who reads the call: the identifiers tell the font.
std::optional<FontSpecs> specsFrom(SpecificationSource source, std::int16_t first,
                                   std::int16_t second) {
    const std::int32_t font = static_cast<std::uint16_t>(first) | static_cast<std::int32_t>(second)
                                                                      << 16;
    const std::optional<FontSpecification> found = specifyFont(font, source);
    if (!found) {
        return std::nullopt;
    }
    return FontSpecs{.stemV = fixedFromReal(found->stemV),
                     .stemH = fixedFromReal(found->stemH),
                     .xHeight = fixedFromReal(found->xHeight),
                     .capHeight = fixedFromReal(found->capHeight),
                     .italicAngle = fixedFromReal(found->italicAngle / 1000),
                     .flags = flagsOf(*found)};
}

} // namespace

std::optional<FontSpecs> specsType0(std::string_view, std::int16_t first, std::int16_t second) {
    return specsFrom(SpecificationSource::program, first, second);
}

std::optional<FontSpecs> specsType1(std::string_view, std::int16_t first, std::int16_t second) {
    return specsFrom(SpecificationSource::tables, first, second);
}

std::optional<FontSpecs> specsType2(std::string_view, std::int16_t first, std::int16_t second) {
    return specsFrom(SpecificationSource::outlines, first, second);
}

} // namespace corvane
