#include "writer/text/text_pen.h"

#include "host/pen.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"

#include <algorithm>
#include <optional>

namespace corvane {

PennedText pennedText(const Matrix& line, const PathStyle& style) {
    PennedText text{.pen = {}, .style = style, .back = {}};
    if (style.strokePaint == 0) {
        return text;
    }
    const std::optional<StretchedPen> pen = penUnder(realMatrix(line));
    if (!pen || pen->pen == Pen()) {
        return text;
    }
    const RealMatrix space = penMatrix(pen->pen);
    const std::optional<RealMatrix> back = inverse(space);
    if (!back) {
        return text;
    }
    text.pen = pen->pen;
    text.back = *back;
    const double mean = meanStretch(space);
    const auto before = [mean](Fixed length) {
        return fixedFromReal(realFromFixed(length) / mean);
    };
    text.style.lineWidth = before(style.lineWidth);
    text.style.dashPhase = before(style.dashPhase);
    std::ranges::transform(style.dash, text.style.dash, before);
    return text;
}

void enterPenOf(Walk& walk, const PennedText& text) {
    if (!text.isRound()) {
        walk.text.addMatrix(penMatrix(text.pen));
        walk.text.add("cm\n");
    }
}

} // namespace corvane
