// An object that an edit changed, drawn in the user space and the state of the page's own bytes.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/art/walk.h"
#include "writer/patch/comparison.h"
#include "writer/patch/content_bytes.h"

namespace corvane {

/// The painted path of the page that an object comes from.
struct PathSource {
    TraceIndex event = 0;
    Art art = Art::null; ///< what its bytes make
};

/// Writes what the state of the page has otherwise, the path, and the operator that paints it:
/// where a part did not change, the page's own bytes. The CTM must have an inverse.
void changedWorks(Walk& walk, ContentBytes& bytes, const ContentTrace& trace,
                  const PathSource& source, Art art, const ArtDifference& difference);

/// Writes the page's own bytes of a path: without what makes it a clip.
void unchangedWorks(Walk& walk, ContentBytes& bytes, const ContentTrace& trace, TraceIndex event);

/// Writes a path of the page that only clips: as it was, or in the form of that art.
void clipOnlyWorks(Walk& walk, ContentBytes& bytes, const ContentTrace& trace, TraceIndex event,
                   Art changed);

} // namespace corvane
