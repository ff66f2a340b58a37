// Calculator functions: programs in a part of the PostScript language (PDF Reference, 3.9.4).
#pragma once

#include "reader/paint/function.h"

#include <string_view>
#include <vector>

namespace corvane {

/// The function of a program, braces included. Null where it holds a word that is none of the
/// language's, or too many of them.
FunctionPointer readCalculator(std::string_view program, std::vector<Function::Interval> domain,
                               const std::vector<Function::Interval>& range);

} // namespace corvane
