// The whole program but for the process around it.
#pragma once

#include <span>

namespace corvane {

/// Follows the command line `words` (without the program's name). The exit status: 0 done, 1
/// failed, 2 bad usage, 130 cancelled.
int runProgram(std::span<const char* const> words);

} // namespace corvane
