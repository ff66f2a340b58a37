// How style calls the fonts of the artwork, and its fonts' faces.
#pragma once

#include "app/svg/sink.h"
#include "host/text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// What families of page fonts begin with.
inline constexpr std::string_view pageFamilyPrefix = "Corvane ";

/// A face of a page font as a family of its own: the family itself, then "family 2", "family 3".
std::string familyOfFace(std::string_view family, std::int32_t face);

struct FamilyFace {
    std::string_view family;
    std::int32_t face = 0;
};
/// The other way round. Only families of page fonts have faces.
FamilyFace faceOfFamily(std::string_view family);

/// The family in a style; "sans-serif" and its like stay keywords.
void writeFamily(TextOutput&, std::string_view family);
/// The value of `font-family`: the face, the family that a machine may have, the generic one.
void writeFamilies(TextOutput&, const FontFacts&, std::int32_t face);

/// "serif" and its like.
std::string_view genericName(GenericFamily);
bool isGenericName(std::string_view name);

} // namespace corvane
