#include "writer/page/carried_reference.h"

#include "output/primitives.h"
#include "reader/syntax/syntax.h"

#include <cstdint>

namespace corvane {

void carryReference(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    std::int32_t number = 0;
    std::int32_t generation = 0;
    referenceObject(findEntry(cache, dictionary, key), number, generation);
    nameOutput(*cache.output, key);
    referenceOutput(*cache.output, number, generation);
}

} // namespace corvane
