// What the functions that write patches share.
#pragma once

#include "filters/text_sink.h"
#include "reader/content/content_trace.h"
#include "reader/shading/page_patterns.h"
#include "runtime/memory.h"
#include "writer/art/walk.h"
#include "writer/image/new_images.h"
#include "writer/paint/new_paints.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/drawn_groups.h"
#include "writer/patch/gathered_state.h"
#include "writer/patch/moved_patterns.h"
#include "writer/patch/text/show_bytes.h"
#include "writer/text/set_text.h"

#include <cstdint>
#include <memory>
#include <string>

namespace corvane {

struct PatchTools {
    PatchTools(DocumentCache& cache, const PageBase& base, const ContentTrace& pageTrace,
               const PageFonts& fonts, ResourceRegistry& resources)
        : trace(pageTrace), bytes(cache, base.streams, pageTrace.streamStarts()),
          patterns(cache, base, resources), paints(std::make_unique<NewPaints>(cache)),
          contentPaints(*paints, resources, contentOf(base)), groups(*paints, resources),
          setText(&fonts, resources), images(cache, resources), walk(sink),
          state(walk, bytes, pageTrace, patterns) {
        walk.images = &images;
        walk.paints = hostHoldsPatterns() ? &contentPaints : nullptr;
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

    /// The page's own content; what is beyond it on the artboard is not seen.
    static PaintedContent contentOf(const PageBase& base) {
        return {.placement = inverse(base.matrix.exact).value_or(RealMatrix()),
                .area = visibleArtboard()};
    }

    const ContentTrace& trace;
    ContentBytes bytes;
    MovedPatterns patterns;
    std::unique_ptr<NewPaints> paints;
    ContentPaints contentPaints;
    DrawnGroups groups;
    SetText setText;
    NewImages images;
    ShownOperators shown{bytes, trace};
    TextSink sink;
    Walk walk;
    GatheredState state;
    std::int64_t takenBytes = 0;
    ZoneCharge charge; ///< of what was taken
};

} // namespace corvane
