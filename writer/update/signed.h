// What a save owes to the signatures of a file.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// Warns that a changed page will show in a signed file. A certified file, whose author's signature
/// allows no changed page at any of its levels, raises `certifiedFile`, unless the host says that
/// this does not matter.
void respectSignatures(DocumentCache& cache);

} // namespace corvane
