// The host's character set of one byte: Mac OS Roman, as Unicode has it.
#pragma once

#include <array>

namespace corvane {

/// By code; 0 for control characters. 219 is the currency sign, as PDF has it.
extern const std::array<char32_t, 256> romanLetters;

} // namespace corvane
