#include "reader/image/place_image.h"

#include "reader/content/appearance.h"
#include "reader/content/interpreter.h"
#include "reader/image/painted_stencil.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/matrix.h"
#include "runtime/rules.h"

namespace corvane {

bool hostHoldsImages() {
    const auto extension = knownExtension();
    return rules().readsImages && extension && extension->version >= 5;
}

namespace {

Art makePlaced(Interpreter& interpreter, const PlacedImage& placed) {
    const Art art = interpreter.containers.make(ArtKind::placed);
    callHost(slot::setPlacedImage, art, &placed);
    tellAppearance(interpreter, art, {.fills = true});
    return art;
}

} // namespace

void placeImage(Interpreter& interpreter, const KnownImage& image, std::int64_t start) {
    ContentLevel& level = interpreter.level;
    level.placed = Art::null;
    if (image.image == Image::null) {
        interpreter.omissions.note(Omission::image);
        return;
    }
    if (!inverse(interpreter.state.exactCtm)) {
        return;
    }
    ImageFacts facts;
    callHost(slot::getImageFacts, image.image, &facts);
    if (facts.isPlaceholder) {
        interpreter.omissions.note(Omission::image);
    }
    const PlacedImage placed{.image = image.image,
                             .matrix = hostMatrix(interpreter.state.exactCtm),
                             .isSmooth = image.isSmooth};
    const bool isPainted = image.isStencil && paintsStencils(interpreter);
    level.placed = isPainted ? paintStencil(interpreter, placed) : makePlaced(interpreter, placed);
    if (level.tellsSources) {
        const ArtSource source = interpreter.sourceFrom(start);
        callHost(slot::setArtSource, level.placed, &source);
    }
    ++level.painted;
}

} // namespace corvane
