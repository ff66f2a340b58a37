#include "writer/patch/works/drawn_groups.h"

#include "filters/text_sink.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/shading/page_patterns.h"
#include "runtime/fixed.h"
#include "writer/art/path_works.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"
#include "writer/patch/art_extent.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace corvane {

namespace {

struct Drawing {
    TextSink sink;
    Walk walk{sink};
};

Fixed limited(std::int64_t value) {
    return static_cast<Fixed>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
}

} // namespace

std::string_view DrawnGroups::add(Art art) {
    const auto drawing = std::make_unique<Drawing>();
    auto resources = std::make_unique<ResourceRegistry>();
    const ArtExtent extent = extentOf(art);
    ContentPaints paints(
        *paints_, *resources,
        {.placement = {},
         .area = {realFromFixed(limited(extent.left)), realFromFixed(limited(extent.bottom)),
                  realFromFixed(limited(extent.right)), realFromFixed(limited(extent.top))}});
    drawing->walk.paints = hostHoldsPatterns() ? &paints : nullptr;
    artWorks(drawing->walk, art);
    drawing->walk.text.flush();
    const std::int32_t number = nextIdentity();
    std::string text = drawing->sink.take();
    textBytes_ += static_cast<std::int64_t>(text.size());
    charge_.resize(textBytes_);
    groups_.push_back(
        {number,
         std::move(text),
         {limited(extent.left), limited(extent.top), limited(extent.right), limited(extent.bottom)},
         std::move(resources)});
    return resources_->add(ResourceCategory::object, number, 0);
}

void writeGroup(DocumentCache& cache, const DrawnGroup& group) {
    Filter& output = *cache.output;
    touchXRef(output, group.number, 0);
    objectOutput(output, group.number, 0);
    stringOutput(output, "<<\r/Type /XObject /Subtype /Form /BBox [ ");
    rectOutput(output, group.box);
    needVersion(Feature::transparency);
    stringOutput(output, "]\r/Group << /S /Transparency >> /Resources <<\r");
    group.resources->write(cache, {group.number, 0});
    stringOutput(output, ">>\r");
    finishStream(cache, group.number, group.text);
}

} // namespace corvane
