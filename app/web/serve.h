// The command `serve`: from its start to its end.
#pragma once

#include "app/cli/web_module.h"

namespace corvane {

/// Serves until the person or the silence ends it. Raises nothing.
void serve(ServeCall& call);

} // namespace corvane
