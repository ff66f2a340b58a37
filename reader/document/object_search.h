// A search of the whole file, byte by byte, for what a cross-reference would tell.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// Names that tell what an object is. They count only if the dictionary at the head holds them:
/// they may also be in the bytes of a stream or string.
enum class Mentioned : std::uint8_t { objectStream, sectionStream, encryption };

struct Mention {
    std::int32_t head = 0; ///< offset behind "obj" or "trailer"
    Mentioned what = Mentioned::encryption;
    std::int32_t number = 0; ///< of the object; 0: it is a trailer
    std::int32_t offset = 0; ///< of the object
};

struct SearchResult {
    std::vector<std::int32_t> trailers; ///< offsets behind the word, the newest last; not all
    std::vector<Mention> mentions;      ///< in the order of the file
};

/// Enters every object ("12 0 obj") into the table; of several with one number the last
/// counts. Those in object streams are not looked into.
SearchResult searchFile(DocumentCache& cache, ReferenceTable& references);

} // namespace corvane
