// Drawing a page into the host's document: its geometry, then its content.
#include "objects/stack.h"
#include "reader/content/appearance.h"
#include "reader/content/content.h"
#include "reader/content/interpreter.h"
#include "reader/content/losses.h"
#include "reader/form/annotations.h"
#include "reader/form/form_drawing.h"
#include "reader/image/place_image.h"
#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "reader/page/page_matrix.h"
#include "reader/shading/page_patterns.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/text/show_text.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/rules.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// The host's artboard takes the size of `box`.
void sizeArtboard(const Box& box) {
    ArtboardSize size;
    callHost(slot::getArtboardSize, &size);
    size = hostSize(box);
    callHost(slot::setArtboardSize, &size);
}

void readOrigin() {
    Point origin;
    callHost(slot::getPageOrigin, &origin);
}

void tellIdentity(DocumentCache& cache, std::span<const ObjectOwner> streams) {
    const auto extension = knownExtension();
    if (extension && extension->pageIdentity != nullptr) {
        extension->pageIdentity(extension->context,
                                {.page = factsCache(cache), .digest = digestPage(cache, streams)});
    }
}

/// Whether the host keeps the sources of objects, for a save that patches the page.
bool tellsSources() {
    const auto extension = knownExtension();
    return rules().recordsOrigin && extension && extension->version >= 3;
}

void runPage(Interpreter& interpreter, std::span<const ObjectOwner> streams) {
    std::int64_t total = 0;
    for (const ObjectOwner& stream : streams) {
        total += streamLength(stream.get());
    }
    interpreter.progress.begin(total);
    ContentScope page(interpreter, sharedObject(interpreter.cache.resources.get()));
    interpreter.level.tellsSources = tellsSources();
    interpreter.readsForms = hostHoldsForms();
    interpreter.level.area = turnedBox(pageMatrix(interpreter.cache), cropCache(interpreter.cache));
    interpreter.readsText = hostHoldsText();
    interpreter.readsImages = hostHoldsImages();
    interpreter.readsPatterns = hostHoldsPatterns();
    interpreter.readsTransparency = hostHoldsAppearance();
    interpreter.readsPens = hostHoldsPens();
    interpreter.readsIntents = hostHoldsIntents();
    interpreter.readsInkMixtures = hostHoldsInkMixtures();
    runContent(interpreter, streams);
    page.leave();
    interpreter.containers.finish();
}

/// In a layer of their own, in front of the page.
void drawAnnotationLayer(Interpreter& interpreter, const PageMatrix& matrix) {
    const std::vector<Annotation> annotations =
        interpreter.readsForms ? shownAnnotations(interpreter.cache) : std::vector<Annotation>();
    if (annotations.empty()) {
        return;
    }
    constexpr std::string_view title = "Annotations";
    LayerInfo info{.locked = 1};
    info.title[0] = static_cast<std::uint8_t>(title.size());
    std::ranges::copy(title, info.title + 1);
    Layer layer = Layer::null;
    callHost(slot::addLayer, &info, LayerRole::annotations, &layer);
    Art group = Art::null;
    callHost(slot::getLayerArt, layer, &group);
    drawAnnotations(interpreter, annotations, matrix, group);
}

} // namespace

void readCache(DocumentCache& cache) {
    const PageMatrix matrix = pageMatrix(cache);
    sizeArtboard(cropCache(cache));
    readOrigin();
    cache.interpreter->omissions = Omissions();
    if (rules().profile == Profile::original) {
        noteIgnoredDefaults(*cache.interpreter);
    }
    applyPageMatrix(*cache.interpreter, matrix);

    const std::vector<ObjectOwner> streams = contentStreams(cache);
    tellIdentity(cache, streams);
    runPage(*cache.interpreter, streams);
    drawAnnotationLayer(*cache.interpreter, matrix);

    memoryException();
    cache.interpreter->fonts.deliver();
    callHost(slot::finishImport, cache.art, cache.art);
    callHost(slot::redrawDocument);
    cache.interpreter->omissions.report();

    sizeArtboard(turnedBox(matrix, mediaCache(cache)));
    const Rect bounds = hostRect(turnedBox(matrix, cropCache(cache)));
    callHost(slot::setPageBounds, &bounds);
    readOrigin();
}

} // namespace corvane
