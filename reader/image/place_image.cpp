#include "reader/image/place_image.h"

#include "reader/content/appearance.h"
#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/matrix.h"
#include "runtime/rules.h"

namespace corvane {

bool hostHoldsImages() {
    const auto extension = knownExtension();
    return rules().readsImages && extension && extension->version >= 5;
}

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
    level.placed = interpreter.containers.make(ArtKind::placed);
    callHost(slot::setPlacedImage, level.placed, &placed);
    tellAppearanceAsOne(interpreter, level.placed, appearanceAsOne(interpreter.state.transparency));
    if (level.tellsSources) {
        const ArtSource source = interpreter.sourceFrom(start);
        callHost(slot::setArtSource, level.placed, &source);
    }
    ++level.painted;
}

} // namespace corvane
