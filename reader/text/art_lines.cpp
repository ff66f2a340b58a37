#include "reader/text/art_lines.h"

#include "reader/content/appearance.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"

namespace corvane {

namespace {

/// Runs that a line has before no more come in front: all are moved each time. A line of a page has
/// about as many letters at most.
constexpr std::int32_t mostRunsBefore = 256;

bool hostGrowsLines() {
    const auto extension = knownExtension();
    return extension && extension->version >= 10;
}

} // namespace

bool ArtLines::goesOn() {
    const LineArt& line = art();
    const Transparency& transparency = interpreter_.state.transparency;
    return line.painted == interpreter_.level.painted &&
           line.settings == interpreter_.state.settings && line.blend == transparency.blend &&
           line.mask == transparency.mask && line.overprint == interpreter_.state.overprint &&
           line.intent == interpreter_.state.intent && isSamePlace();
}

/// Programs save the state around each piece of a line, so a `q` and `Q` do not part it.
bool ArtLines::isSamePlace() {
    const LineArt& line = art();
    Containers& containers = interpreter_.containers;
    return line.isLayered || containers.isLayered() ? line.container == containers.container()
                                                    : line.clipped == containers.clippedGroup();
}

void ArtLines::beginLine(TextLine& line) {
    LineArt& made = art();
    made = {.art = interpreter_.containers.make(ArtKind::text),
            .container = interpreter_.containers.container(),
            .clipped = interpreter_.containers.clippedGroup(),
            .isLayered = interpreter_.containers.isLayered(),
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

/// Where it comes from.
void ArtLines::note(TextRun& run) {
    const ContentLevel& level = interpreter_.level;
    if (level.tellsSources) {
        run.source = interpreter_.sourceFrom(level.span.start);
    }
}

/// That it was painted.
void ArtLines::keep(const TextRun& run, ShownPart part) {
    ContentLevel& level = interpreter_.level;
    interpreter_.seenThrough += run.fillOpacity != 1 || run.strokeOpacity != 1 ? 1 : 0;
    art().painted = ++level.painted;
    ++art().runs;
    part.art = art().art;
    level.shown.parts.push_back(part);
}

void ArtLines::addRun(TextRun& run, ShownPart part) {
    note(run);
    callHost(slot::addTextRun, art().art, &run);
    part.run = art().runs;
    keep(run, part);
}

void ArtLines::tellReach(const TextLine& line) {
    callHost(slot::setTextLine, art().art, &line);
}

bool ArtLines::takesBefore() {
    return hostGrowsLines() && art().runs < mostRunsBefore && goesOn();
}

void ArtLines::addRunBefore(const TextLine& line, TextRun& run, ShownPart part, Fixed gap) {
    note(run);
    callHost(slot::addTextRunBefore, art().art, &line, &run, gap);
    part.run = 0;
    part.isBefore = true;
    keep(run, part);
}

} // namespace corvane
