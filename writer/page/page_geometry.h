// The boxes of a page that is saved, and how the artwork lies in them.
#pragma once

#include "host/matrix.h"
#include "reader/document/cache.h"

namespace corvane {

struct PageGeometry {
    bool kept = false;    ///< the boxes stay as the file has them
    RealMatrix placement; ///< from the artboard to the page's own space
    Box mediaBox;         ///< where they are not kept, in the page's own space
    Box cropBox;
};

/// Asks the host for the artboard and the bounds. Warns where they had to be corrected.
PageGeometry pageGeometry(DocumentCache& cache);

/// The facts of the page in use as it will be.
PageFacts factsOf(DocumentCache& cache, const PageGeometry& geometry);

} // namespace corvane
