// Updates that were cut short: a save of ours that was killed, or a machine that stopped.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Takes the file as ending where an update of ours begins that was cut short. Looks at the last
/// 1,024 bytes, and further back only where they hold no finished end. Where `doubtful`, because
/// what was found could not be read, an end there is believed only as the last line of the file.
/// Whether the file ends earlier now.
bool passUnfinished(DocumentCache& cache, bool doubtful);

} // namespace corvane
