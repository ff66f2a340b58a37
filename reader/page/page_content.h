// The streams that draw a page.
#pragma once

#include "reader/document/cache.h"

#include <vector>

namespace corvane {

/// The content streams of the page in use, in order. Contents of another kind raise `range`; so do
/// such elements in the original profile, which the extended one passes over with a warning.
std::vector<ObjectOwner> contentStreams(DocumentCache& cache);

} // namespace corvane
