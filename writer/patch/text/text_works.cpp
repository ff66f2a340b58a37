#include "writer/patch/text/text_works.h"

#include "reader/content/losses.h"
#include "runtime/exception.h"
#include "writer/art/color_works.h"
#include "writer/art/path_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/changed_works.h"
#include "writer/patch/text/show_bytes.h"
#include "writer/patch/text/text_run.h"
#include "writer/text/text_state.h"

#include <string>

namespace corvane {

namespace {

/// The page's own bytes of a part of what an operator shows.
void ownBytesWorks(PatchTools& tools, const PaintedArt& was) {
    const TraceEvent& event = tools.trace.events()[was.event];
    std::string bytes;
    tools.bytes.append(bytes, {event.start, event.end});
    const ShownPart& part = tools.trace.textPart(was.part);
    const std::optional<ShowBytes> show = showBytes(bytes);
    if (!show || static_cast<std::size_t>(part.endElement) > show->elements.size()) {
        failException(Exception::unpatchable);
    }
    tools.walk.text.add("[");
    for (std::int32_t i = part.firstElement; i < part.endElement; ++i) {
        tools.walk.text.add(show->elements[static_cast<std::size_t>(i)]);
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

/// Letters that are typed.
void typedWorks(PatchTools& tools, const EditedObject& is, const RealMatrix& back) {
    if (is.set == notSet) {
        failException(Exception::unpatchable); // its source is another one than its letters were
    }
    tools.ofPage.setText.write(tools.walk, is.set, runOf(is.art, is.run), back, tools.fontNames);
}

} // namespace

void sourcedTextWorks(PatchTools& tools, const BaseContent& base, const PaintedArt& was,
                      const EditedObject& is, const ArtDifference& difference) {
    Walk& walk = tools.walk;
    const TraceEvent& event = tools.trace.events()[was.event];
    const RealMatrix& ctm = tools.trace.matrix(event.behind.matrix);
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!back) {
        failException(Exception::unpatchable);
    }
    const PathStyle style = runOf(is.art, is.run).style;
    if (difference.fill) {
        colorWorks(walk, style.fill, true);
    }
    strokeWorks(walk, style, difference, meanStretch(ctm));
    walk.text.add("BT\n");
    if (difference.letters) {
        typedWorks(tools, is, *back);
    } else {
        const RealMatrix movement = difference.place ? movementOfText(base, was, is) : RealMatrix();
        movedWorks(tools, was, textModeOf(style), movement, *back);
    }
    walk.text.add("ET\n");
}

void movedGlyphsWorks(PatchTools& tools, const PaintedArt& was, const RealMatrix& movement) {
    const TraceEvent& event = tools.trace.events()[was.event];
    const std::optional<RealMatrix> back = inverse(tools.trace.matrix(event.behind.matrix));
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
    pathStyleWorks(walk, style);
    walk.text.add("BT\n");
    typedWorks(tools, is, RealMatrix());
    walk.text.add("ET\n");
}

} // namespace corvane
