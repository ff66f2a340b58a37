// A search of the whole file, byte by byte, for what a cross-reference would tell.
#pragma once

#include "reader/document/cache.h"
#include "runtime/exception.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// A name occurs behind this head of an object or trailer: the file cannot be read where the
/// dictionary there says the same, but the bytes of a stream or string may say anything.
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
