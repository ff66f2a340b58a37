// Path data: the value of a path's `d`.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/extent.h"
#include "app/svg/sink.h"
#include "host/matrix.h"

#include <cstdint>
#include <span>

namespace corvane {

/// Where the SVG's 0,0 lies in the coordinates of the art; its y points down.
struct PageCorner {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t x(Fixed artX) const { return artX - left; }
    std::int64_t y(Fixed artY) const { return top - artY; }
};

/// Writes the data of all subpaths of a path or compound path: absolute commands M, L, H, V, C and
/// Z, letters and blanks only where needed. A repeated command letter is left out. The last
/// curve of a closed subpath, back to its start, is written out, and so is its last line if the
/// last anchor lies on the start: a reader that merges an end on the start gets the same anchors.
void writePathData(TextOutput&, const Document&, Art shape, PageCorner);
/// The same for an element that a pen transforms.
void writePathData(TextOutput&, const Document&, Art shape, PageCorner, const Pen&);

/// What a pen of the artboard is on the page, where y points down.
RealMatrix penOnPage(const Pen&);

/// Writes the data of one subpath that is in no document.
void writeSegmentData(TextOutput&, std::span<const Segment>, bool closed, PageCorner);

/// Writes the data of an axis-parallel rectangle.
void writeRectangleData(TextOutput&, const Extent&, PageCorner);

} // namespace corvane
