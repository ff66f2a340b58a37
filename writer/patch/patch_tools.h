// What the functions that write patches share.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/art/walk.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/drawn_groups.h"
#include "writer/patch/gathered_state.h"
#include "writer/patch/moved_patterns.h"
#include "writer/patch/text_sink.h"

#include <string>

namespace corvane {

struct PatchTools {
    PatchTools(DocumentCache& cache, const PageBase& base, const ContentTrace& pageTrace,
               ResourceRegistry& resources)
        : trace(pageTrace), bytes(cache, base.streams, pageTrace.streamStarts()),
          patterns(cache, base, resources), groups(resources), walk(sink),
          state(walk, bytes, pageTrace, patterns) {}
    PatchTools(const PatchTools&) = delete;
    PatchTools& operator=(const PatchTools&) = delete;

    /// What was written since it was taken last.
    std::string taken() {
        walk.text.flush();
        return sink.take();
    }

    const ContentTrace& trace;
    ContentBytes bytes;
    MovedPatterns patterns;
    DrawnGroups groups;
    TextSink sink;
    Walk walk;
    GatheredState state;
};

} // namespace corvane
