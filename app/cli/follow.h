// One command on one file: what it does, what it says, and how it ends.
#pragma once

#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"

#include <optional>

namespace corvane {

/// How the program ends.
inline constexpr int exitDone = 0;
inline constexpr int exitFailed = 1;
inline constexpr int exitUsage = 2;
inline constexpr int exitCancelled = 130;

int exitStatus(const std::optional<Fault>& error);

/// Follows `arguments`, and tells what came of it; the exit status.
int follow(Arguments arguments);

/// Tells what a command found, as text or as JSON; the exit status.
int conclude(const Arguments& arguments, const Report& report);

} // namespace corvane
