// Questions to the person at the terminal.
#pragma once

#include "app/cli/options/arguments.h"

#include <string>

namespace corvane {

/// Asks, and waits for an answer. Yes is "y" or "yes"; all else is no, as are the end of input and
/// Ctrl-C. No, without asking, where nobody is at a terminal or the facts are for a machine.
bool agrees(const Arguments& arguments, const std::string& question);

} // namespace corvane
