// The boxes of a page that is saved, and how the artwork lies in them.
#pragma once

#include "host/matrix.h"
#include "reader/document/cache.h"
#include "reader/page/page_base.h"

#include <string_view>

namespace corvane {

struct PageGeometry {
    bool kept = false;    ///< the boxes stay as the file has them
    RealMatrix placement; ///< from the artboard to the page's own space
    Box mediaBox;         ///< where they are not kept, in the page's own space
    Box cropBox;
};

/// Asks the host for the artboard and the bounds. Warns where they had to be corrected. A new size
/// is one that the page had not when artwork was opened from `base`; without one (null), from the
/// page as it stands.
PageGeometry pageGeometry(DocumentCache& cache, const PageBase* base);

/// The facts of the page in use as it will be.
PageFacts factsOf(DocumentCache& cache, const PageGeometry& geometry);

/// How exactly a box is written: as artwork has its size, or so that the same box is read back.
enum class BoxDigits { some, all };

/// Writes a box as an entry of a dictionary.
void writeBox(Filter& output, std::string_view key, const Box& box,
              BoxDigits digits = BoxDigits::some);

} // namespace corvane
