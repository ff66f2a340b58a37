// What the functions that write patches share.
#pragma once

#include "filters/text_sink.h"
#include "reader/content/appearance.h"
#include "reader/content/content_trace.h"
#include "reader/shading/page_patterns.h"
#include "runtime/memory.h"
#include "writer/art/drawn_looks.h"
#include "writer/art/walk.h"
#include "writer/image/new_images.h"
#include "writer/layer/layer_marks.h"
#include "writer/paint/new_paints.h"
#include "writer/patch/base/base_content.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/gathered_state.h"
#include "writer/patch/moved_patterns.h"
#include "writer/patch/text/show_bytes.h"
#include "writer/patch/works/drawn_groups.h"
#include "writer/text/font_names.h"
#include "writer/text/set_text.h"

#include <cstdint>
#include <memory>
#include <string>

namespace corvane {

/// Of all contents of a page: objects that are written once, wherever they are used.
struct PageTools {
    PageTools(DocumentCache& inUse, const PageBase& pageBase, const PageFonts& pageFonts,
              SavedLayers& savedLayers)
        : cache(inUse), base(pageBase), fonts(pageFonts), setText(&pageFonts), images(inUse),
          paints(std::make_unique<NewPaints>(inUse)), layers(savedLayers) {
        paints->knowInks(pageBase.resources.get());
    }
    PageTools(const PageTools&) = delete;
    PageTools& operator=(const PageTools&) = delete;

    DocumentCache& cache;
    const PageBase& base;
    const PageFonts& fonts;
    SetText setText;
    NewImages images;
    std::unique_ptr<NewPaints> paints;
    SavedLayers& layers;
    std::int32_t resetState = 0; ///< number of the state that a page begins with; 0: not needed
};

/// Of one content.
struct PatchTools {
    PatchTools(PageTools& pageTools, const BaseContent& patched, ResourceRegistry& registry)
        : ofPage(pageTools), content(patched), trace(patched.trace), resources(registry),
          bytes(ofPage.cache, streamsOf(patched, ofPage.base), trace.streamStarts()),
          patterns(ofPage.cache, resourcesOf(patched, ofPage.base), matrixOf(patched, ofPage.base),
                   resources),
          contentPaints(*ofPage.paints, resources, paintedContent()),
          contentImages(ofPage.images, resources), groups(*ofPage.paints, resources),
          looks(resources), marks(ofPage.layers, resources),
          fontNames(ofPage.cache, ofPage.fonts, resourcesOf(patched, ofPage.base), resources),
          walk(sink), state(walk, bytes, patched, patterns,
                            {ofPage.cache, resourcesOf(patched, ofPage.base), bytes, trace}) {
        walk.images = &contentImages;
        walk.paints = hostHoldsPatterns() ? &contentPaints : nullptr;
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

    /// Of new paints; what is beyond the artboard is not seen.
    PaintedContent paintedContent() const {
        return {.placement = inverse(matrixOf(content, ofPage.base)).value_or(RealMatrix()),
                .area = visibleArtboard()};
    }

    PageTools& ofPage;
    const BaseContent& content;
    const ContentTrace& trace;
    ResourceRegistry& resources;
    ContentBytes bytes;
    MovedPatterns patterns;
    ContentPaints contentPaints;
    ContentImages contentImages;
    DrawnGroups groups;
    DrawnLooks looks;
    LayerMarks marks;
    FontResourceNames fontNames;
    ShownOperators shown{bytes, trace};
    TextSink sink;
    Walk walk;
    GatheredState state;
    std::int64_t takenBytes = 0;
    ZoneCharge charge; ///< of what was taken
};

} // namespace corvane
