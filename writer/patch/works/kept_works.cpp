#include "writer/patch/works/kept_works.h"

#include "writer/art/outline.h"
#include "writer/art/path_works.h"
#include "writer/art/segment_works.h"

#include <string>

namespace corvane {

void rangesWorks(PatchTools& tools, const std::vector<ByteRange>& ranges) {
    std::string text;
    for (const ByteRange& range : ranges) {
        tools.bytes.append(text, range);
        text += '\n'; // a comment may end it
    }
    tools.walk.text.add(text);
}

void wordWorks(PatchTools& tools, const TraceEvent& event) {
    rangesWorks(tools, {{event.word, event.end}});
}

void unchangedWorks(PatchTools& tools, TraceIndex event) {
    rangesWorks(tools, constructionBytes(tools.trace, event, false));
    wordWorks(tools, tools.trace.events()[event]);
}

void newClipWorks(PatchTools& tools, const RealMatrix& ctm, Art clip) {
    Walk& walk = tools.walk;
    walk.space = userSpace(ctm);
    const ChargedList<Subpath> subpaths = subpathsWithin(clip);
    if (!segmentWorks(walk, subpaths.items())) {
        walk.text.add("0 0 0 0 re\n");
    }
    walk.space.reset();
    walk.text.add(clipOperator(leadingStyle(clip)));
    walk.text.add("n\n");
}

void clipOnlyWorks(PatchTools& tools, TraceIndex event, Art changed) {
    if (changed != Art::null) {
        return newClipWorks(tools, tools.trace.matrix(tools.trace.events()[event].behind.matrix),
                            changed);
    }
    rangesWorks(tools, constructionBytes(tools.trace, event, true));
    tools.walk.text.add("n\n");
}

} // namespace corvane
