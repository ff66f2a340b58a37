// Numbers of dictionaries as they are, past the bounds of 16.16.
#pragma once

#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <vector>

namespace corvane {

/// The numbers of an array in front of the first element that is none, at most `most`; of anything
/// else none.
std::vector<double> realNumbers(DocumentCache& cache, const Object& array, std::size_t most);

} // namespace corvane
