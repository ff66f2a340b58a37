// Saving: one page of a file is replaced by what is appended to the file; nothing before it
// changes.
#pragma once

#include "host/extension.h"
#include "reader/document/cache.h"
#include "writer/page/page_geometry.h"

#include <cstdint>
#include <string>

namespace corvane {

/// Appends the page in use, made from the host's artwork, and puts it on the disk; tells the host
/// extension. Where anything raises, the file is as long as before, and the code is raised again.
/// Raises `repairedFile`, `pageChanged` and `fileChanged` before anything is written.
void writeCache(DocumentCache& cache);

/// The same, but what would be appended is only counted; the file need not be one that may change.
void tryCache(DocumentCache& cache);

// The parts of an update, for a cache whose output is an `UpdateFilter`.

/// What is settled before the first byte is written.
struct UpdatePlan {
    PageGeometry geometry;
    std::uint64_t origin = 0; ///< identity of the page that the artwork was opened from
};

/// Keeps new objects off every number below the file's Size: objects that only readers of
/// cross-reference streams see have such numbers (PDF Reference 3.4.7), and so may references to
/// objects that are gone. Extended only.
void reserveNumbers(DocumentCache& cache);

/// Writes the content, its length, the page and its resources to the cache's output; the length of
/// the content.
std::int32_t pageWrite(DocumentCache& cache, const UpdatePlan& plan);

/// Writes the cross-reference section and the trailer; the offset of the section.
std::int32_t updateWrite(DocumentCache& cache);

/// What ends an update whose section stands at `section`, and makes it count.
std::string updateEnd(std::int32_t section);

} // namespace corvane
