// The page's own bytes of paths, in the text of a patch.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/patch/patch_tools.h"

#include <vector>

namespace corvane {

/// Writes bytes of the content, a line end behind each range.
void rangesWorks(PatchTools& tools, const std::vector<ByteRange>& ranges);
/// Writes the operator that ends a path.
void wordWorks(PatchTools& tools, const TraceEvent& path);

/// Writes the page's own bytes of a path: without what makes it a clip.
void unchangedWorks(PatchTools& tools, TraceIndex event);

/// Makes art the clip of what follows, in the user space under that CTM.
void newClipWorks(PatchTools& tools, const RealMatrix& ctm, Art clip);

/// Writes a path of the page that only clips: as it was, or in the form of that art.
void clipOnlyWorks(PatchTools& tools, TraceIndex event, Art changed);

} // namespace corvane
