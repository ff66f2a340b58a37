// ToUnicode CMaps: what the codes of a font mean (PDF Reference, 5.9).
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace corvane {

/// The CMap of codes of two bytes. Texts are in the order of reading; an empty one is left out.
std::string toUnicodeCMap(const std::map<std::uint32_t, std::u32string>& texts);

} // namespace corvane
