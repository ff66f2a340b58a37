// What the names of glyphs mean: the AGL and its rules.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// The characters that a name stands for: by the list, by "uniXXXX" and "uXXXXXX", for each part of
/// "f_f_i", without the suffix of "a.alt". Empty for names that mean nothing, such as "g123".
std::u32string charactersOfName(std::string_view name);

/// By the names of the font ZapfDingbats, "a1" to "a206"; 0: none.
char32_t dingbatOfName(std::string_view name);

} // namespace corvane
