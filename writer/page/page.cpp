// The objects of a page that is saved.
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/content/appearance.h"
#include "runtime/exception.h"
#include "writer/art/works.h"
#include "writer/crypt/sealed.h"
#include "writer/crypt/sealed_output.h"
#include "writer/font/font_works.h"
#include "writer/image/mask_works.h"
#include "writer/layer/layer_marks.h"
#include "writer/page/needed_version.h"
#include "writer/page/page_object.h"
#include "writer/page/stream_object.h"
#include "writer/paint/plain_spaces.h"
#include "writer/update/update.h"
#include "writer/update/update_filter.h"

#include <string>

namespace corvane {

namespace {

void drawWorks(DocumentCache& cache, UpdatePlan& plan) {
    Drawings drawings;
    std::optional<ContentPaints> paints;
    std::optional<LayerMarks> marks;
    if (DrawnContent* const drawn = plan.drawn.get()) {
        drawings = {.texts = &drawn->texts, .images = &drawn->images};
        drawings.others = &plan.annotations;
        drawings.looks = hostHoldsAppearance() ? &drawn->looks : nullptr;
        drawings.layers = plan.layers ? &marks.emplace(*plan.layers, drawn->resources) : nullptr;
        if (plan.paints) {
            drawings.paints =
                &paints.emplace(*plan.paints, drawn->resources,
                                PaintedContent{plan.geometry.placement, visibleArtboard()});
        }
    }
    documentWorks(cache, plan.geometry.placement, drawings);
}

/// The content, enciphered in an encrypted file; its length in the file.
std::int32_t writeSealedWorks(DocumentCache& cache, UpdatePlan& plan) {
    Filter& output = *cache.output;
    const std::int32_t start = markFilter(output);
    Chain sealed(&output);
    linkSeal(cache, sealed, newStreamCipher(cache), {plan.numbers.content, 0});
    cache.output = sealed.top();
    const Exception code = guarded([&] { drawWorks(cache, plan); });
    cache.output = &output;
    raiseException(code);
    sealed.unlink();
    return markFilter(output) - start;
}

std::vector<std::int32_t> madeLayers(const UpdatePlan& plan) {
    return plan.layers ? plan.layers->made() : std::vector<std::int32_t>();
}

void writeImages(DocumentCache& cache, std::span<const NewImage> images) {
    for (const NewImage& image : images) {
        writeImage(cache, image);
    }
}

/// Draws the page anew.
std::int64_t writeDrawn(DocumentCache& cache, UpdatePlan& plan, WrittenDigest* written) {
    Filter& output = *cache.output;
    const auto [content, length] = plan.numbers;

    const std::int32_t contentPlace = markFilter(output);
    touchXRef(output, content, 0);
    objectOutput(output, content, 0);
    stringOutput(output, "<<\r/Length ");
    referenceOutput(output, length, 0);
    stringOutput(output, ">>\rstream\r");
    const std::int32_t bytes = writeSealedWorks(cache, plan);
    // The line end before "endstream" does not count.
    stringOutput(output, "\rendstream\rendobj\r");

    writeLength(cache, length, bytes);
    const bool hasResources = plan.drawn && plan.drawn->resources.hasAdded();
    if (hasResources) {
        plan.drawn->writeObjects(cache);
    }
    if (plan.paints) {
        plan.paints->write(cache);
    }
    writePlainSpaces(cache);
    writePageObject(cache, plan.page, plan.geometry,
                    {.contents = {{.number = content, .generation = 0, .place = contentPlace}},
                     .resources = hasResources ? &plan.drawn->resources : nullptr,
                     .origin = plan.origin,
                     .artwork = plan.artwork,
                     .layers = madeLayers(plan),
                     .firstNew = plan.firstNew,
                     .written = written});
    forallFamily([&](const Family& family) { writeFamily(cache, family); });
    forallMask([&](const Mask& mask) { writeMask(cache, mask); });
    return bytes;
}

/// An external graphics state by which everything is as on a new page (PDF Reference, 4.3.4).
void writeResetState(Filter& output, std::int32_t number) {
    needVersion(Feature::transparency);
    touchXRef(output, number, 0);
    objectOutput(output, number, 0);
    stringOutput(output, "<< /Type /ExtGState /ca 1 /CA 1 /BM /Normal /SMask /None /AIS false\r"
                         "/OP false /op false /RI /RelativeColorimetric\r"
                         "/TR2 /Default /HT /Default /BG2 /Default /UCR2 /Default >>\rendobj\r");
}

/// What the patches to one content need.
void writeNeeded(DocumentCache& cache, const ContentPatch& content,
                 const ResourceRegistry& resources) {
    content.looks.write(cache, resources);
    for (const MovedPattern& pattern : content.patterns) {
        writePattern(cache, pattern);
    }
    for (const PropertyList& list : content.lists) {
        writePropertyList(cache, list);
    }
    for (const DrawnGroup& group : content.groups.groups()) {
        writeGroup(cache, group);
    }
}

std::int64_t writePatched(DocumentCache& cache, const UpdatePlan& plan, PlannedPatch& patch,
                          WrittenDigest* written) {
    ContentPatch& page = patch.page.page;
    const WrittenStreams streams = writeStreams(cache, *plan.base, page.bytes, patch.streams);
    writeNeeded(cache, page, patch.resources);
    for (FormObject& form : patch.page.forms) {
        writeForm(cache, form);
        writeNeeded(cache, form.patch, *form.resources);
    }
    patch.page.paints->write(cache);
    patch.page.fonts.write(cache);
    writeImages(cache, patch.page.images);
    writePlainSpaces(cache);
    if (patch.page.resetState != 0) {
        writeResetState(*cache.output, patch.page.resetState);
    }
    writePageObject(cache, plan.page, plan.geometry,
                    {.contents = streams.parts,
                     .resources = &patch.resources,
                     .origin = plan.origin,
                     .artwork = plan.artwork,
                     .layers = madeLayers(plan),
                     .firstNew = plan.firstNew,
                     .written = written});
    return streams.bytes;
}

} // namespace

std::int64_t pageWrite(DocumentCache& cache, UpdatePlan& plan) {
    if (!rules().recordsOrigin) {
        return writeDrawn(cache, plan, nullptr);
    }
    const bool hasLayers = plan.layers.has_value();
    WrittenDigest written(plan.firstNew,
                          hasLayers ? plan.layers->former() : std::span<const std::int32_t>());
    // The record says these, and nothing else of a page that shows the same.
    const std::string artwork = std::to_string(plan.origin.value_or(PageOrigin()).digest) + "\r" +
                                std::to_string(plan.artwork.value_or(0)) + "\r";
    written.feed(std::as_bytes(std::span(artwork)));
    auto& output = static_cast<UpdateFilter&>(*cache.output);
    output.written = &written;
    std::int64_t length = 0;
    const Exception code = guarded([&] {
        length = plan.patch ? writePatched(cache, plan, *plan.patch, &written)
                            : writeDrawn(cache, plan, &written);
    });
    output.written = nullptr;
    raiseException(code);
    plan.written = written.value();
    return length;
}

} // namespace corvane
