// What clips elements: a clip of a group, and chains of those that no group carries.
#include "app/svg/tree/tree_writer.h"

#include "app/svg/markup.h"
#include "app/svg/style.h"
#include "app/svg/subpaths.h"
#include "app/svg/text/text_clip.h"
#include "app/svg/text/text_writer.h"

namespace corvane {

TreeWriter::ClipEffect TreeWriter::clipEffect(Art clip, const GroupSurvey& survey,
                                              const Extent& visible) const {
    if (clip == Art::null) {
        return ClipEffect::none;
    }
    if (survey.clip.blank) {
        return ClipEffect::hides;
    }
    if (isTextClip(document_, clip)) {
        return ClipEffect::cuts;
    }
    const PathStyle& style = document_.style(leadingPath(document_, clip));
    const bool kept = style.fillPaint != 0 || style.strokePaint != 0 || style.note != Note::null;
    if (!kept && survey.clip.rectangle &&
        survey.clip.bounds.contains(survey.content.within(visible))) {
        return ClipEffect::cutsNothing;
    }
    return ClipEffect::cuts;
}

void TreeWriter::startClip(std::uint32_t number, std::uint32_t within, int depth) {
    writeIndent(out_, depth);
    out_.text("<clipPath");
    writeId("clip", number);
    if (within != 0) {
        writeReference(within);
    }
}

/// Letters have neither ids nor sources of their own: they are no objects.
void TreeWriter::writeTextClip(Art clip, int depth) {
    writeSource("data-source", clip);
    out_.text(">");
    forEachClipText(document_, clip, [&](Art text) {
        writeIndent(out_, depth + 1);
        writeText(out_, servers_, text,
                  {.corner = corner_,
                   .base = base_,
                   .number = ++numbers_.clipTexts,
                   .clip = {},
                   .isClip = true,
                   .letters = numbers_.letters});
    });
    writeIndent(out_, depth);
}

std::uint32_t TreeWriter::writeClip(Art clip, std::uint32_t within, int depth) {
    const std::uint32_t number = ++numbers_.clips;
    if (isTextClip(document_, clip)) {
        startClip(number, within, depth);
        writeTextClip(clip, depth);
        out_.text("</clipPath>");
        return number;
    }
    const Art leading = leadingPath(document_, clip);
    PathStyle style = leading == Art::null ? PathStyle{} : document_.style(leading);
    style.pen = {}; // nothing is drawn of it
    writeServers(style, depth);
    startClip(number, within, depth);
    out_.text("><path");
    writeSource("data-source", clip);
    writeClipStyle(out_, style, servers_);
    writeData(clip);
    endShape(style.note);
    out_.text("</clipPath>");
    return number;
}

std::uint32_t TreeWriter::writeRectangleClip(const Extent& rectangle, std::uint32_t within,
                                             int depth) {
    const std::uint32_t number = ++numbers_.clips;
    startClip(number, within, depth);
    out_.text("><path d=\"");
    writeRectangleData(out_, rectangle, corner_);
    out_.text("\"/></clipPath>");
    return number;
}

void TreeWriter::extendChain(ClipChain& chain, Art clip, const ClipShape& shape, int depth) {
    if (shape.blank) {
        chain.hides = true;
    }
    if (chain.hides) {
        return;
    }
    if (!shape.rectangle) {
        chain.clip = writeClip(clip, chain.clip, depth);
        chain.base = chain.clip;
        chain.rectangle = Extent::everything();
        return;
    }
    chain.rectangle = chain.rectangle.within(shape.bounds);
    if (chain.rectangle.empty()) {
        chain.hides = true;
    } else {
        chain.clip = writeRectangleClip(chain.rectangle, chain.base, depth);
    }
}

std::string TreeWriter::referenceTo(std::uint32_t clip) {
    return "url(#clip" + std::to_string(clip) + ")";
}

void TreeWriter::writeReference(std::uint32_t clip) {
    writePlainAttribute(out_, "clip-path", referenceTo(clip));
}

void TreeWriter::writeDroppedClip(Art clip) {
    out_.text(" data-clip=\"");
    writePathData(out_, document_, clip, corner_);
    out_.text("\"");
    if (document_.style(leadingPath(document_, clip)).rule == FillRule::evenOdd) {
        writePlainAttribute(out_, "data-clip-rule", "evenodd");
    }
    writeSource("data-clip-source", clip);
}

} // namespace corvane
