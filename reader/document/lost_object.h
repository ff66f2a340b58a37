// Objects that are not where the cross-reference says, in a file that was opened by it: somebody
// edited a part of the file by hand.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Moves the node to where a search of the file finds its object; false where that is nowhere else.
/// The file is searched once.
bool moveToFound(DocumentCache& cache, Ref<ReferenceNode> node);

/// Notes that an object could be read where it was found.
void noteFound(DocumentCache& cache);

} // namespace corvane
