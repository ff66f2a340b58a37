// The updates of a file: what was appended to it, by whom, and taking the newest off again.
#pragma once

#include "host/extension.h"
#include "reader/document/cache.h"

namespace corvane {

/// Tells the host extension every update, from the oldest, which is the file as it was made. A file
/// whose sections are not known, because it was repaired, raises `structure`.
void tellUpdates(DocumentCache& cache);

/// Cuts the newest update off, with an unfinished update of ours behind it, and puts that on the
/// disk. Tells the host extension which update it was. Raises `foreignUpdate` where it
/// is not ours or does not reach to the end, `fileChanged` where the file is not as long as when it
/// was read; the file is not changed then.
void revertCache(DocumentCache& cache);

} // namespace corvane
