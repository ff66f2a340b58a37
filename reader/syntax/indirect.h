// Indirect objects as they stand in the file.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>

namespace corvane {

struct FoundObject {
    ObjectOwner object;
    std::int32_t number = 0;
    std::int32_t generation = 0;
    std::int32_t end = 0; ///< behind the last word read, counted from the file's first byte
};

/// Whether an object begins at `offset`: two integers and "obj".
bool beginsObject(DocumentCache& cache, std::int32_t offset);

/// The object at `offset`, whatever its number. Raises `structure` where there is none.
FoundObject objectAt(DocumentCache& cache, std::int32_t offset);

} // namespace corvane
