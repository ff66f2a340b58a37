#include "writer/patch/base/base_reading.h"

#include "reader/content/appearance.h"
#include "reader/content/content.h"
#include "reader/content/interpreter.h"
#include "reader/form/annotations.h"
#include "reader/form/form_drawing.h"
#include "reader/image/place_image.h"
#include "reader/page/page_matrix.h"
#include "reader/shading/page_patterns.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/text/show_text.h"
#include "runtime/callbacks.h"
#include "runtime/warning.h"

#include <utility>
#include <vector>

namespace corvane {

namespace {

void runBase(Interpreter& interpreter, const PageBase& base, ContentTrace& trace) {
    std::vector<ObjectOwner> streams;
    std::int64_t total = 0;
    for (const BaseStream& stream : base.streams) {
        streams.push_back(sharedObject(stream.stream.get()));
        total += streamLength(stream.stream.get());
    }
    interpreter.progress.begin(total);
    ContentScope page(interpreter, sharedObject(base.resources.get()));
    interpreter.level.trace = &trace;
    interpreter.level.area = turnedBox(base.matrix, base.cropBox);
    trace.begin(interpreter);
    runContent(interpreter, streams);
    trace.end(interpreter);
    page.leave();
    interpreter.containers.finish();
}

/// Annotations are those of the page as it stands.
void readAnnotations(Interpreter& interpreter, const PageBase& base, BaseReading& reading) {
    const std::vector<Annotation> annotations =
        interpreter.readsForms ? shownAnnotations(interpreter.cache) : std::vector<Annotation>();
    if (!annotations.empty()) {
        callHost(slot::newArtwork, &reading.annotations);
        drawAnnotations(interpreter, annotations, base.matrix, reading.annotations);
    }
}

} // namespace

void readBase(DocumentCache& cache, const PageBase& base, BaseReading& reading) {
    callHost(slot::newArtwork, &reading.root);
    Interpreter interpreter(cache);
    openState(interpreter, reading.root);
    applyPageMatrix(interpreter, base.matrix);
    // The content was read before, and is read once more where it is patched.
    cache.work.pageBytes = 0;
    const WarningMark before;
    interpreter.readsForms = hostHoldsForms();
    interpreter.readsText = hostHoldsText();
    interpreter.readsImages = hostHoldsImages();
    interpreter.readsPatterns = hostHoldsPatterns();
    interpreter.readsTransparency = hostHoldsAppearance();
    interpreter.readsPens = hostHoldsPens();
    interpreter.readsIntents = hostHoldsIntents();
    interpreter.readsInkMixtures = hostHoldsInkMixtures();
    runBase(interpreter, base, reading.trace);
    readAnnotations(interpreter, base, reading);
    reading.layers.read(reading.root, std::move(interpreter.layers));
    reading.fonts = std::move(interpreter.fonts);
    before.forgetLater();
    cache.work.pageBytes = 0;
}

void disposeBase(BaseReading& reading) {
    for (Art* const art : {&reading.root, &reading.annotations}) {
        if (*art != Art::null) {
            callHost(slot::disposeArtwork, std::exchange(*art, Art::null));
        }
    }
}

} // namespace corvane
