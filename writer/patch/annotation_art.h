// Annotations in artwork that takes the place of a whole page: they stay as the file has them.
#pragma once

#include "host/artwork.h"
#include "reader/document/cache.h"
#include "writer/page/page_geometry.h"

#include <unordered_set>

namespace corvane {

/// The art that shows annotations of the page in use, which the artwork names or which look like
/// them, and groups that hold nothing else: no content of the page. Tells the host of those that
/// the artwork has otherwise, or may have, as `tellChangedAnnotations` does.
std::unordered_set<Art> annotationArt(DocumentCache& cache, const PageGeometry& geometry);

} // namespace corvane
