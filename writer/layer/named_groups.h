// Which optional content groups a file needs for what the save leaves as it is.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <set>
#include <span>

namespace corvane {

/// Those of `groups`, numbers of objects, that the other pages, the annotations of the page in use
/// or `rules`, objects of the file, lead to by references. All of them, where these lead to more
/// than a page's digest follows (`budget::digestObjects`), or cannot be read.
std::set<std::int32_t> groupsNamedElsewhere(DocumentCache& cache,
                                            const std::set<std::int32_t>& groups,
                                            std::span<const ObjectIdentifier> rules);

} // namespace corvane
