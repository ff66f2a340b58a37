// `serve`: the part of the program that it needs lies in a library of its own, loaded when it is
// asked for. So the other commands do not load what only a server links, which takes 2.5 ms.
#pragma once

#include "app/cli/arguments.h"

#include <string>

namespace corvane {

/// What the library exports: follows the command; the exit status. Raises nothing.
using ServeFunction = int(const Arguments& arguments);
inline constexpr auto serveFunctionName = "corvane_serve";

/// Follows `serve`, and tells what came of it; the exit status.
int runServe(const Arguments& arguments);

} // namespace corvane
