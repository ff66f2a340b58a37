// A search of the whole file, byte by byte, for what a cross-reference would tell.
#pragma once

#include "reader/document/cache.h"
#include "runtime/exception.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// A name that forbids reading the file, found behind the head of an object or trailer. It counts
/// only if the dictionary there holds it: it may also be in the bytes of a stream or string.
struct Mention {
    std::int32_t head = 0; ///< offset behind "obj" or "trailer"
    Exception code = Exception::none;
};

struct SearchResult {
    std::vector<std::int32_t> trailers; ///< offsets behind the word, the newest last; not all
    std::vector<Mention> mentions;      ///< of object streams and encryption
};

/// Enters every object ("12 0 obj") into the reference table; of several with one number the last
/// counts.
SearchResult searchFile(DocumentCache& cache);

} // namespace corvane
