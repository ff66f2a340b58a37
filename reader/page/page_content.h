// The streams that draw a page.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// A content stream and the reference that leads to it.
struct BaseStream {
    ObjectOwner stream;
    std::int32_t number = 0;
    std::int32_t generation = 0;
};

/// The streams that a value of Contents names, in order; missing ones are none. Contents of another
/// kind raise `range`; so do such elements in the original profile, which the extended one passes
/// over with a warning.
std::vector<BaseStream> streamsOf(DocumentCache& cache, const Object& contents);

/// Those of the page in use.
std::vector<ObjectOwner> contentStreams(DocumentCache& cache);

} // namespace corvane
