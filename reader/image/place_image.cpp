#include "reader/image/place_image.h"

#include "reader/content/appearance.h"
#include "reader/content/interpreter.h"
#include "reader/image/painted_stencil.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/matrix.h"
#include "runtime/rules.h"

#include <cmath>

namespace corvane {

namespace {

/// Points that a pixel may take up and still run into those beside it where the file does not say.
/// Larger ones are meant to be seen: readers show their edges.
constexpr double largestSmoothPixel = 4;

bool hasLargePixels(const RealMatrix& matrix, const ImageFacts& facts) {
    return std::hypot(matrix.a, matrix.b) >= largestSmoothPixel * facts.width ||
           std::hypot(matrix.c, matrix.d) >= largestSmoothPixel * facts.height;
}

} // namespace

bool hostHoldsImages() {
    const auto extension = knownExtension();
    return rules().readsImages && extension && extension->version >= 5;
}

namespace {

/// A soft mask and an intent of the image count instead of those of the state (PDF Reference, 7.5.4
/// and 4.8.4).
Art makePlaced(Interpreter& interpreter, const PlacedImage& placed, const KnownImage& image) {
    const Art art = interpreter.containers.make(ArtKind::placed);
    callHost(slot::setPlacedImage, art, &placed);
    Appearance appearance = imageAppearance(interpreter.state);
    if (interpreter.readsIntents) {
        appearance.intent = image.intent.value_or(appearance.intent);
    }
    if (image.hasSoftMask) {
        appearance.mask = SoftMask::null;
    }
    tellAppearanceAsOne(interpreter, art, appearance);
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
    const RealMatrix& matrix = interpreter.state.exactCtm;
    const PlacedImage placed{.image = image.image,
                             .matrix = hostMatrix(matrix),
                             .isSmooth = image.isSmooth.value_or(!hasLargePixels(matrix, facts))};
    const bool isPainted = image.isStencil && paintsStencils(interpreter);
    level.placed =
        isPainted ? paintStencil(interpreter, placed) : makePlaced(interpreter, placed, image);
    if (level.tellsSources) {
        const ArtSource source = interpreter.sourceFrom(start);
        callHost(slot::setArtSource, level.placed, &source);
    }
    ++level.painted;
}

} // namespace corvane
