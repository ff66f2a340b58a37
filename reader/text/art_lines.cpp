#include "reader/text/art_lines.h"

#include "reader/content/appearance.h"
#include "runtime/callbacks.h"

namespace corvane {

bool ArtLines::goesOn() {
    const LineArt& line = art();
    const Transparency& transparency = interpreter_.state.transparency;
    return line.painted == interpreter_.level.painted &&
           line.settings == interpreter_.state.settings && line.blend == transparency.blend &&
           line.mask == transparency.mask && line.overprint == interpreter_.state.overprint &&
           line.intent == interpreter_.state.intent &&
           line.container == interpreter_.containers.container();
}

void ArtLines::beginLine(TextLine& line) {
    LineArt& made = art();
    made = {.art = interpreter_.containers.make(ArtKind::text),
            .container = interpreter_.containers.container(),
            .settings = interpreter_.state.settings,
            .blend = interpreter_.state.transparency.blend,
            .mask = interpreter_.state.transparency.mask,
            .overprint = interpreter_.state.overprint,
            .intent = interpreter_.state.intent};
    callHost(slot::setTextLine, made.art, &line);
    // Opacity is that of runs.
    tellAppearanceAsOne(interpreter_, made.art,
                        {.blend = made.blend,
                         .mask = made.mask,
                         .overprint = made.overprint,
                         .intent = made.intent});
}

void ArtLines::addRun(TextRun& run, ShownPart part) {
    ContentLevel& level = interpreter_.level;
    LineArt& line = art();
    if (level.tellsSources) {
        run.source = interpreter_.sourceFrom(level.span.start);
    }
    callHost(slot::addTextRun, line.art, &run);
    interpreter_.seenThrough += run.fillOpacity != 1 || run.strokeOpacity != 1 ? 1 : 0;
    line.painted = ++level.painted;
    part.art = line.art;
    part.run = line.runs++;
    level.shown.parts.push_back(part);
}

} // namespace corvane
