// The command `serve`: from its start to its end.
#pragma once

#include "app/cli/arguments.h"

namespace corvane {

/// Serves until the person or the silence ends it; the exit status. Raises nothing.
int serve(const Arguments& arguments);

} // namespace corvane
