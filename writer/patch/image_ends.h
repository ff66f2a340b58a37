// Ends of inline images, which readers know by what stands behind them.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/patch.h"

#include <vector>

namespace corvane {

/// Behind "EI" page content has to stand: else the two letters count as data of the image, which
/// then goes on. Where `patches`, in their order, take away what stood there and leave something
/// else, operators that do nothing take its place.
void keepImageEnds(const ContentTrace& trace, ContentBytes& bytes, std::vector<Patch>& patches);

} // namespace corvane
