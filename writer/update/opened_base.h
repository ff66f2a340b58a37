// What the artwork of a save was opened from.
#pragma once

#include "reader/document/cache.h"
#include "writer/update/update.h"

namespace corvane {

/// Settles what the artwork was opened from, if the host knows that. A page that is another one
/// now raises `pageChanged`, one that was saved from another artwork `otherArtwork`, unless the
/// host says that this does not matter.
void planBase(DocumentCache& cache, UpdatePlan& plan);

} // namespace corvane
