// Cross-reference streams (PDF Reference 1.5, 3.4.7): sections whose entries are the data of a
// stream, and whose trailer is its dictionary.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>

namespace corvane {

struct StreamSection {
    ObjectOwner trailer;
    std::int32_t end =
        0; ///< behind the word "startxref", if it follows; from the file's first byte
};

/// Enters the objects of the section at `offset`. Raises `structure` where there is none or its
/// entries have no form, `limit` past the budget of entries.
StreamSection readStreamSection(DocumentCache& cache, std::int32_t offset);

} // namespace corvane
