// Fonts for the pages of fuzz targets.
#pragma once

#include "tests/support/pdf_builder.h"

#include <string_view>

namespace corvane::fuzz {

/// The entry of a resource dictionary. F0 is not embedded, F1 is composite with ligatures in its
/// ToUnicode, F2 and "F 3" have a program, F4 is of Type 3, F5 is vertical,
/// and F6 has codes of four bytes, all there are.
inline constexpr std::string_view fontEntry =
    "/Font << /F0 << /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >> /F1 30 0 R "
    "/F2 31 0 R /F#203 32 0 R /F4 33 0 R /F5 34 0 R /F6 41 0 R >> ";

/// The objects that it refers to, from 30 on.
void addFonts(test::PdfBuilder& file);

} // namespace corvane::fuzz
