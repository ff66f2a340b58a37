// The fonts of a document as `@font-face` rules.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/sink.h"

namespace corvane {

/// Writes a style sheet with a rule for each face that has a file, the file in it as base-64;
/// nothing where there is no such face.
void writeFontRules(TextOutput&, const FontTable&);

} // namespace corvane
