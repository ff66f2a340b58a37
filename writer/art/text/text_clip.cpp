#include "writer/art/text/text_clip.h"

#include "reader/content/art.h"

namespace corvane {

ChargedList<Art> clipTexts(Art clip) {
    ChargedList<Art> fromFront;
    if (artKind(clip) == ArtKind::text) {
        fromFront.push(clip);
        return fromFront;
    }
    for (Art text = firstChild(clip); text != Art::null; text = nextSibling(text)) {
        fromFront.push(text);
    }
    ChargedList<Art> texts;
    while (!fromFront.empty()) {
        texts.push(fromFront.pop());
    }
    return texts;
}

} // namespace corvane
