#include "writer/patch/text/text_works.h"

#include "reader/content/losses.h"
#include "runtime/exception.h"
#include "writer/art/color_works.h"
#include "writer/art/path_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/text/show_bytes.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/changed_works.h"
#include "writer/text/text_pen.h"
#include "writer/text/text_state.h"

#include <string>

namespace corvane {

namespace {

/// From the artboard to the space in which the text was shown.
std::optional<RealMatrix> backOf(const ContentTrace& trace, const PaintedArt& was) {
    return inverse(trace.matrix(trace.events()[was.event].behind.matrix));
}

/// The page's own bytes of a part of what an operator shows.
void ownBytesWorks(PatchTools& tools, const PaintedArt& was) {
    const ShownPart& part = tools.trace.textPart(was.part);
    const ShowBytes& show = tools.shown.at(was.event, part.endElement);
    tools.walk.text.add("[");
    for (std::int32_t i = part.firstElement; i < part.endElement; ++i) {
        tools.walk.text.add(show.elements[static_cast<std::size_t>(i)]);
        tools.walk.text.add(" ");
    }
    tools.walk.text.add("] TJ\n");
}

/// `back` leads from the artboard to the space in force.
void movedWorks(PatchTools& tools, const PaintedArt& was, std::int32_t mode,
                const RealMatrix& movement, const RealMatrix& back) {
    Walk& walk = tools.walk;
    const TextSetting& setting = tools.trace.textSetting(was.setting);
    const ShownPart& part = tools.trace.textPart(was.part);
    if (setting.font == 0) {
        failException(Exception::unpatchable); // the font is one that was set around the form
    }
    if (tools.trace.events()[setting.font - 1].role == OperatorRole::font) {
        walk.text.add(tools.state.bytesOf(setting.font - 1));
    }
    textStateWorks(walk, {.characterSpacing = setting.characterSpacing,
                          .wordSpacing = setting.wordSpacing,
                          .horizontalScale = setting.horizontalScale,
                          .rise = setting.rise,
                          .mode = mode});
    const RealMatrix begin =
        setting.isVertical ? RealMatrix{.ty = part.pen} : RealMatrix{.tx = part.pen};
    textMatrixWorks(walk, multiply(multiply(multiply(begin, setting.matrix), movement), back));
    ownBytesWorks(tools, was);
}

/// Letters that are typed. Those of an object never clip.
void typedWorks(PatchTools& tools, const EditedObject& is, const RealMatrix& back,
                bool isClip = false) {
    if (is.set == notSet) {
        failException(Exception::unpatchable); // its source is another one than its line's was
    }
    TextRun run = runOf(is.art, is.run);
    run.style.clip = isClip ? run.style.clip : 0;
    tools.ofPage.setText.write(tools.walk, is.set, run, back, tools.fontNames);
}

/// The lines along the letters of a run.
void decorateWorks(PatchTools& tools, const EditedObject& is, const std::optional<RealMatrix>& back,
                   LineDepth depth) {
    const TextRun run = runOf(is.art, is.run);
    if (run.decorations.empty()) {
        return;
    }
    if (!back || is.set == notSet) {
        failException(Exception::unpatchable);
    }
    tools.ofPage.setText.decorate(tools.walk, is.set, run, *back, depth);
}

} // namespace

void sourcedTextWorks(PatchTools& tools, const BaseContent& base, const PaintedArt& was,
                      const EditedObject& is, const ArtDifference& difference) {
    Walk& walk = tools.walk;
    const TraceEvent& event = tools.trace.events()[was.event];
    const RealMatrix& ctm = tools.trace.matrix(event.behind.matrix);
    const PathStyle style = runOf(is.art, is.run).style;
    if (needsMask(walk, style)) {
        maskInUserSpace(walk, style, ctm);
    }
    if (difference.fill) {
        colorWorks(walk, style.fill, true);
    }
    strokeWorks(walk, style, difference, meanStretch(ctm));
    const std::optional<RealMatrix> back = backOf(tools.trace, was);
    decorateWorks(tools, is, back, LineDepth::behindLetters);
    walk.text.add("BT\n");
    lettersWorks(tools, base, was, is, difference);
    walk.text.add("ET\n");
    decorateWorks(tools, is, back, LineDepth::beforeLetters);
}

void lettersWorks(PatchTools& tools, const BaseContent& base, const PaintedArt& was,
                  const EditedObject& is, const ArtDifference& difference) {
    const std::optional<RealMatrix> back = backOf(tools.trace, was);
    if (!back) {
        failException(Exception::unpatchable);
    }
    if (difference.letters) {
        typedWorks(tools, is, *back);
    } else {
        const RealMatrix movement = difference.place ? movementOfText(base, was, is) : RealMatrix();
        movedWorks(tools, was, textModeOf(runOf(is.art, is.run).style), movement, *back);
    }
}

void textClipWorks(PatchTools& tools, const EditedArtwork& artwork, const EditedGroup& group) {
    Walk& walk = tools.walk;
    walk.text.add("BT\n");
    for (EditedIndex run = group.firstRun; run < group.endRun; ++run) {
        typedWorks(tools, artwork.clipRuns[run], RealMatrix(), true);
    }
    walk.text.add("ET\n");
    textStateWorks(walk, {}); // forms begin with the state in force
}

void movedGlyphsWorks(PatchTools& tools, const PaintedArt& was, const RealMatrix& movement) {
    const std::optional<RealMatrix> back = backOf(tools.trace, was);
    if (!back) {
        failException(Exception::unpatchable);
    }
    tools.walk.text.add("BT\n");
    movedWorks(tools, was, tools.trace.textSetting(was.setting).mode, movement, *back);
    tools.walk.text.add("ET\n");
}

void newTextWorks(PatchTools& tools, const EditedObject& is) {
    Walk& walk = tools.walk;
    const PathStyle style = runOf(is.art, is.run).style;
    const PennedText penned = pennedText(lineOf(is.art).matrix, style);
    const bool isApart = needsMask(walk, style) || !penned.isRound();
    if (isApart) {
        enterWorks(walk);
        maskWorks(walk, style);
        enterPenOf(walk, penned);
    }
    pathStyleWorks(walk, penned.style);
    decorateWorks(tools, is, penned.back, LineDepth::behindLetters);
    walk.text.add("BT\n");
    typedWorks(tools, is, penned.back);
    walk.text.add("ET\n");
    decorateWorks(tools, is, penned.back, LineDepth::beforeLetters);
    if (isApart) {
        leaveWorks(walk);
    }
}

} // namespace corvane
