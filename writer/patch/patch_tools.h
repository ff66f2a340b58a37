// What the functions that write patches share.
#pragma once

#include "filters/text_sink.h"
#include "reader/content/appearance.h"
#include "reader/content/content_trace.h"
#include "runtime/memory.h"
#include "writer/art/drawn_looks.h"
#include "writer/art/walk.h"
#include "writer/image/new_images.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/drawn_groups.h"
#include "writer/patch/gathered_state.h"
#include "writer/patch/moved_patterns.h"
#include "writer/text/set_text.h"

#include <cstdint>
#include <string>

namespace corvane {

struct PatchTools {
    PatchTools(DocumentCache& cache, const PageBase& base, const ContentTrace& pageTrace,
               const PageFonts& fonts, ResourceRegistry& resources)
        : trace(pageTrace), bytes(cache, base.streams, pageTrace.streamStarts()),
          patterns(cache, base, resources), groups(resources), setText(&fonts, resources),
          images(resources), looks(resources), walk(sink), state(walk, bytes, pageTrace, patterns) {
        walk.looks = hostHoldsAppearance() ? &looks : nullptr;
    }
    PatchTools(const PatchTools&) = delete;
    PatchTools& operator=(const PatchTools&) = delete;

    /// What was written since it was taken last.
    std::string taken() {
        walk.text.flush();
        std::string text = sink.take();
        takenBytes += static_cast<std::int64_t>(text.size());
        charge.resize(takenBytes);
        return text;
    }

    const ContentTrace& trace;
    ContentBytes bytes;
    MovedPatterns patterns;
    DrawnGroups groups;
    SetText setText;
    NewImages images;
    DrawnLooks looks;
    TextSink sink;
    Walk walk;
    GatheredState state;
    std::int64_t takenBytes = 0;
    ZoneCharge charge; ///< of what was taken
};

} // namespace corvane
