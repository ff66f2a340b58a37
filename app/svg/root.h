// The root element of the SVG: the page's size, and where the artwork came from.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/provenance.h"
#include "app/svg/sink.h"

namespace corvane {

/// Writes the XML declaration and the root's start tag. `namesFiles`: elements below use the names
/// of XLink.
void writeRootStart(TextOutput&, const Page&, const Provenance&, bool namesFiles);

} // namespace corvane
