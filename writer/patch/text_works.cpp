#include "writer/patch/text_works.h"

#include "filters/character.h"
#include "reader/content/losses.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "runtime/reason.h"
#include "writer/art/color_works.h"
#include "writer/art/path_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/changed_works.h"
#include "writer/patch/show_bytes.h"
#include "writer/patch/text_layout.h"
#include "writer/patch/text_run.h"

#include <cmath>
#include <string>
#include <utility>

namespace corvane {

namespace {

/// The text state of a text object; it may be any other in front of it.
struct WrittenState {
    double characterSpacing = 0;
    double wordSpacing = 0;
    double horizontalScale = 1;
    double rise = 0;
    std::int32_t mode = 0;
};

void stateWorks(Walk& walk, const WrittenState& state) {
    constexpr double hundred = 100;
    for (const auto& [value, word] :
         {std::pair(state.characterSpacing, "Tc "), std::pair(state.wordSpacing, "Tw "),
          std::pair(state.horizontalScale * hundred, "Tz "), std::pair(state.rise, "Ts ")}) {
        walk.text.addReal(value + 0.0);
        walk.text.add(word);
    }
    walk.text.addReal(state.mode);
    walk.text.add("Tr\n");
}

void matrixWorks(Walk& walk, const RealMatrix& matrix) {
    walk.text.addMatrix(withoutSignedZeros(matrix));
    walk.text.add("Tm\n");
}

std::int32_t modeOf(const PathStyle& style) {
    constexpr std::int32_t invisible = 3;
    return style.fillPaint != 0 && style.strokePaint != 0 ? 2
           : style.fillPaint != 0                         ? 0
           : style.strokePaint != 0                       ? 1
                                                          : invisible;
}

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
    if (tools.trace.events()[setting.font - 1].role == OperatorRole::font) {
        walk.text.add(tools.state.bytesOf(setting.font - 1));
    }
    stateWorks(walk, {.characterSpacing = setting.characterSpacing,
                      .wordSpacing = setting.wordSpacing,
                      .horizontalScale = setting.horizontalScale,
                      .rise = setting.rise,
                      .mode = mode});
    const RealMatrix begin =
        setting.isVertical ? RealMatrix{.ty = part.pen} : RealMatrix{.tx = part.pen};
    matrixWorks(walk, multiply(multiply(multiply(begin, setting.matrix), movement), back));
    ownBytesWorks(tools, was);
}

/// In ems.
constexpr double sameAdvance = 1.0 / 4000;

void addHexadecimal(std::string& text, char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
}

void stringWorks(Walk& walk, std::string_view codes) {
    if (codes.empty()) {
        return;
    }
    std::string text = "<";
    for (const char c : codes) {
        addHexadecimal(text, c);
    }
    walk.text.add(text + "> ");
}

/// By how much the letters go on, in ems of the run.
void gapWorks(Walk& walk, double ems) {
    constexpr int digits = 2;
    walk.text.addReal(-1000 * ems + 0.0, digits);
}

/// Letters in a font of the page. `back` leads from the artboard to the space in force.
void typedWorks(PatchTools& tools, const BaseReading& base, const EditedObject& is,
                const RealMatrix& back) {
    Walk& walk = tools.walk;
    const TextRun run = runOf(is.art, is.run);
    PageFont* const font = base.fonts.find(run.font);
    TextLine line;
    callHost(slot::getTextLine, is.art, &line);
    const bool isVertical = line.isVertical;
    if (font == nullptr || run.size <= 0 || font->isVertical() != isVertical) {
        noteReason(Reason::newFont);
        failException(Exception::unpatchable);
    }
    std::string missing;
    const auto letters = encodeText(*font, run.text, missing);
    if (!letters) {
        noteReason(Reason::missingLetter, missing);
        failException(Exception::unpatchable);
    }
    const double size = realFromFixed(run.size);
    RealMatrix frame = frameOf(is.art, run, is.start);
    if (!isFinite(frame)) {
        failException(Exception::unpatchable);
    }
    frame = multiply({.a = 1 / size, .d = 1 / size}, frame);
    walk.text.addName(base.fonts.nameOf(*font));
    walk.text.addReal(size);
    walk.text.add("Tf ");
    const double spacing = realFromFixed(run.spacing);
    const double rise = realFromFixed(run.rise);
    // The pen of a column goes down, and its rise is to the right.
    const double forward = isVertical ? -1 : 1;
    stateWorks(walk, {.characterSpacing = forward * spacing,
                      .rise = isVertical ? 0 : rise,
                      .mode = modeOf(run.style)});
    if (isVertical) {
        frame = multiply({.tx = rise}, frame);
    }
    matrixWorks(walk, multiply(frame, back));
    walk.text.add("[");
    std::string codes;
    const auto moveOn = [&](double ems) {
        stringWorks(walk, std::exchange(codes, {}));
        gapWorks(walk, forward * ems);
    };
    auto piece = run.pieces.begin();
    for (const EncodedLetters& each : *letters) {
        for (; piece != run.pieces.end() && piece->start <= each.start; ++piece) {
            if (piece->shift != 0) {
                moveOn(realFromFixed(piece->shift));
            }
        }
        if (each.isBlank) {
            moveOn((isVertical ? columnAdvance : each.advance) + spacing / size);
        }
        codes += each.codes;
        if (isVertical && !each.isBlank && std::abs(each.advance - columnAdvance) > sameAdvance) {
            moveOn(columnAdvance - each.advance);
        }
    }
    stringWorks(walk, codes);
    walk.text.add("] TJ\n");
}

} // namespace

void sourcedTextWorks(PatchTools& tools, const BaseReading& base, const PaintedArt& was,
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
        typedWorks(tools, base, is, *back);
    } else {
        const RealMatrix movement = difference.place ? movementOfText(base, was, is) : RealMatrix();
        movedWorks(tools, was, modeOf(style), movement, *back);
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

void newTextWorks(PatchTools& tools, const BaseReading& base, const EditedObject& is) {
    Walk& walk = tools.walk;
    const PathStyle style = runOf(is.art, is.run).style;
    pathStyleWorks(walk, style);
    walk.text.add("BT\n");
    typedWorks(tools, base, is, RealMatrix());
    walk.text.add("ET\n");
}

} // namespace corvane
