// Saving: one page of a file is replaced by what is appended to the file; nothing before it changes.
#pragma once

#include "host/extension.h"
#include "reader/cache.h"

namespace corvane {

/// Appends the page in use, made from the host's artwork, and puts it on the disk. Where anything
/// raises, the file is as long as before, and the code is raised again.
void writeCache(DocumentCache& cache);

/// The same without a file: what would be appended is counted.
void tryCache(DocumentCache& cache);

/// Writes the content, its length, the page and its resources to the cache's output.
void pageWrite(DocumentCache& cache);

/// Writes the cross-reference section and the trailer.
void updateWrite(DocumentCache& cache);

} // namespace corvane
