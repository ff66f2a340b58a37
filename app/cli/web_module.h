// `serve`: the part of the program that it needs lies in a library of its own, loaded when it is
// asked for. So the other commands do not load what only a server links, which takes 2.5 ms.
#pragma once

#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace corvane {

struct ServeCall {
    const Arguments& arguments;
    /// Called once the page can be opened.
    std::function<void(const std::string& address)> tellAddress;
    std::optional<Fault> fault = {}; ///< what the end was, unless it was meant
    /// Without a page that says it is open, it ends.
    std::chrono::nanoseconds silence = std::chrono::minutes(10);
};

/// What the library exports: follows the command. Raises nothing.
using ServeFunction = void(ServeCall& call);
inline constexpr auto serveFunctionName = "corvane_serve";

/// Follows `serve`, and tells what came of it; the exit status.
int runServe(const Arguments& arguments);

} // namespace corvane
