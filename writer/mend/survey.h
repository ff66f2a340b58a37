// A look at every object of a file, to find those that are damaged.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <vector>

namespace corvane {

struct Survey {
    std::vector<ObjectIdentifier> damaged; ///< what a new copy makes sound, ascending
    /// Entries of the cross-reference that lead to no object.
    std::vector<std::int32_t> missing;
    std::vector<std::int32_t> sections; ///< former streams of the cross-reference
    bool hasDamagedSection = false;     ///< one of them has a wrong Length, or no end
};

/// Reads every object that stands in the file itself; one that is not at its place is looked for.
/// The cache's `mends` then name all of them that are damaged.
Survey surveyObjects(DocumentCache& cache);

} // namespace corvane
