// What a host of today is told about a file.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

enum class CountObjects { no, yes };

/// Pages, objects, updates, length and version of the file, where the host extension wants them.
void tellDocument(DocumentCache& cache, CountObjects count);
/// The signatures of the file, where it has any.
void tellSignatures(DocumentCache& cache);
/// The facts of every page, in order, and what a list shows of it where the host wants that.
void tellPages(DocumentCache& cache);
/// The thumbnail of a page, where it has one; the host wants it.
void tellThumbnail(DocumentCache& cache, std::int32_t page);
/// How sound the file is: all of it is looked at.
void tellDamage(DocumentCache& cache);

} // namespace corvane
