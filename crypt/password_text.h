// Passwords as text.
#pragma once

#include "crypt/secret.h"

#include <optional>

namespace corvane {

/// Text in UTF-8 as PDFDocEncoding (PDF 2.0, annex D.3); nothing where that does not hold it, or it
/// is no UTF-8.
std::optional<Secret> documentEncoded(Octets text);

/// The character of a byte of PDFDocEncoding; where it has none, that of the same number, or
/// U+FFFF.
char32_t documentCharacter(std::uint8_t byte);

} // namespace corvane
