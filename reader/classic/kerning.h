// Kerning of the line under construction: kept while it is built, told to the host when it ends.
#pragma once

#include "reader/classic/text_state.h"

namespace corvane {
struct Interpreter;
}

namespace corvane::classic {

/// Moves what comes next by so many thousandths of the size. Nothing in a Type 3 font; without a
/// line `context`.
void adjustTextLine(Interpreter& interpreter, Fixed thousandths);

/// Gives the kerns to the run of the line, the newest first.
void applyKerns(TextLineState& line);

} // namespace corvane::classic
