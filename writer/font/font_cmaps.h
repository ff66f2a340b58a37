// CMaps of a font that is written: what its codes mean, and which glyphs they show (PDF Reference,
// 5.6.4 and 5.9).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace corvane {

/// The CMap of codes of two bytes. Texts are in the order of reading; an empty one is left out.
std::string toUnicodeCMap(const std::map<std::uint32_t, std::u32string>& texts);

/// The CMap that gives codes of two bytes their CIDs.
std::string encodingCMap(const std::map<std::uint32_t, std::uint32_t>& cids, bool isVertical);
inline constexpr std::string_view encodingName = "Corvane-Codes";

} // namespace corvane
