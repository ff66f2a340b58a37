// Updates that were cut short: a save of ours that was killed, or a machine that stopped.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Looks for an update of ours that was cut short at the end of the file, and lets the file end
/// where that update begins. Looks at the last 1,024 bytes, and further back only where they hold
/// no finished end. `doubtful`: the sections could not be read, so an end is believed only as the
/// last line of the file. Returns whether the file ends earlier now.
bool passUnfinished(DocumentCache& cache, bool doubtful);

} // namespace corvane
