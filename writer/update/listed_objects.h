// The objects that a section of the cross-reference names.
#pragma once

#include "objects/object_place.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <set>
#include <span>
#include <vector>

namespace corvane {

struct ListedObject {
    std::int32_t number = 0;
    std::int32_t generation = 0; ///< the low 16 bits are written
    ObjectPlace place =
        ObjectPlace::atOffset(0); ///< of a free one, the number of the next free one
    bool isFree = false;
};

/// The objects of the update that is being written, ascending by number; of several with one
/// number, the last.
std::vector<ListedObject> updatedObjects();

/// All objects of the file as it stands, ascending by number. Of several with one number that
/// differ in generation, the one that stands furthest back.
std::vector<ListedObject> standingObjects(const DocumentCache& cache);

/// All objects of the file as it will be: those of the update, and those that stand and have
/// another number, but for the numbers in `leftOut`. The head of the free list comes first; the
/// last number is `size` - 1, if only by a free object.
std::vector<ListedObject> wholeObjects(const DocumentCache& cache,
                                       const std::set<std::int32_t>& leftOut, std::int32_t size);

/// Objects whose numbers follow one another.
struct NumberRun {
    std::int32_t first = 0;
    std::span<const ListedObject> objects;
};
/// Divides objects that ascend by number.
std::vector<NumberRun> numberRuns(std::span<const ListedObject> objects);

} // namespace corvane
