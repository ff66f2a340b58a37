// The AGL (list of glyph names), packed by cmake/pack-glyph-list, which says how.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace corvane {

extern const std::string_view packedGlyphList;
extern const std::string_view packedDingbats;

/// Names and what they mean.
using GlyphList = std::unordered_map<std::string, std::u32string>;
GlyphList unpackedGlyphList(std::string_view packed);

} // namespace corvane
