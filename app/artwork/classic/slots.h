// The host's answers at the classic slots for text, fonts and placed art.
#pragma once

#include "host/callbacks.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

void fillFontSlots(std::span<HostProcedure> table);
void fillOpenRunSlots(std::span<HostProcedure> table);
void fillTextWalkSlots(std::span<HostProcedure> table);
void fillPlacedSlots(std::span<HostProcedure> table);

/// The text of a length-prefixed string. Throws `ArtworkError` for null.
std::string_view prefixedText(const std::uint8_t* text);
/// Into 256 bytes; at most 255 of the text.
void copyPrefixed(std::uint8_t* into, std::string_view text);

/// b and c are handed over negated: the host's own y axis points down.
Matrix withNegatedSlant(Matrix matrix);

} // namespace corvane
