// The catalog of a file that is saved: written once more where an update changes what it says.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "writer/update/update.h"

namespace corvane {

/// Whether anything but the page and its objects is written.
bool changesCatalog(const UpdatePlan& plan);

/// Writes layers, and the catalog where it has to say more, to the cache's output: behind all that
/// may need a version of PDF, and in front of the trailer.
void writeCatalog(DocumentCache& cache, UpdatePlan& plan);

} // namespace corvane
