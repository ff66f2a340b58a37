// One command on many files.
#pragma once

#include "app/cli/options/arguments.h"

namespace corvane {

/// Follows `arguments` for each of their files, in several processes, goes on where one fails, and
/// sums up in the end. What is said of a file stays together; files come as they are done. The exit
/// status.
int runBatch(const Arguments& arguments);

} // namespace corvane
