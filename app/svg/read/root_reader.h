// The root element: the page, where the artwork came from, and the root's user space.
#pragma once

#include "app/artwork/page.h"
#include "app/artwork/provenance.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/values/length.h"
#include "app/svg/reader.h"
#include "host/matrix.h"

namespace corvane {

struct RootReading {
    bool ours = false;
    Provenance provenance;
    RealMatrix matrix;                 ///< from the root's user space to the art
    Viewport viewport;                 ///< of the root's user space
    double pixel = 1 / pixelsPerPoint; ///< of the page, in the art
};

/// Reads the attributes of the root, and sets the page. `opened`: as `readSvg` gets it. A page that
/// is as we wrote it keeps its bounds and artboard. One that a person resized gets new bounds
/// around artwork that stays where it is. One that another program made starts at 0,0.
RootReading readRoot(const Attributes& root, Page& page, const OpenedPage* opened = nullptr);

} // namespace corvane
