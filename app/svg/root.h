// The root element of the SVG: the page's size, and where the artwork came from.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/provenance.h"
#include "app/svg/sink.h"

namespace corvane {

/// What the root must say for the elements below it.
struct RootNeeds {
    bool namesFiles = false; ///< they use the names of XLink
    /// Some blend. The paper is not behind a page's art but below it: art does not blend with it
    /// (PDF Reference, 7.3.6).
    bool blends = false;
};

/// Writes the XML declaration and the root's start tag.
void writeRootStart(TextOutput&, const Page&, const Provenance&, const RootNeeds&);

} // namespace corvane
