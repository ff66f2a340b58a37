#include "reader/classic/text_style.h"

#include "reader/content/interpreter.h"
#include "reader/paint/path_art.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/warning.h"

namespace corvane::classic {

namespace {

/// Render modes of the PDF Reference, 5.2.5: from this one on text clips as well.
constexpr std::int32_t firstClippingMode = 4;
/// The host's usual range of tracking.
constexpr Fixed leastTracking = -1000 * fixedOne;
constexpr Fixed mostTracking = 10000 * fixedOne;

Fixed times(Fixed value, std::int32_t factor) {
    return detail::saturated(std::int64_t{value} * factor);
}

} // namespace

const std::shared_ptr<const SelectedFont>& TextState::firstFont() {
    static const auto font = std::make_shared<const SelectedFont>();
    return font;
}

PathStyle stateTextStyle(const GraphicsState& state) {
    const std::int32_t mode = state.classicText.renderMode % firstClippingMode;
    PathStyle style = scaledStyle(state);
    style.fillPaint = mode == 0 || mode == 2 ? 1 : 0;
    style.strokePaint = mode == 1 || mode == 2 ? 1 : 0;
    style.clip = state.classicText.renderMode >= firstClippingMode ? 1 : 0;
    return style;
}

void setCharacters(CharStyle& style, const TextState& text) {
    style.size = text.size;
    style.rise = text.rise;
    style.leading = negateFixed(text.lineOffsetY);
    style.tracking = times(callHost(slot::fixedDivide, text.characterSpacing, text.size), 1000);
    if (style.tracking < leastTracking || style.tracking > mostTracking) {
        raiseWarning(Warning::tracking);
    }
    style.horizontalScale = text.horizontalScale;
    style.verticalScale = text.verticalScale;
    style.autoKern = 0;
}

void setParagraph(ParaStyle& style, Fixed wordSpacing) {
    const Fixed percent = detail::saturated(std::int64_t{wholePercent} + wordSpacing);
    style.alignment = 0;
    style.leastWordSpacing = percent;
    style.wordSpacing = percent;
    style.mostWordSpacing = percent;
    style.leftIndent = 0;
    style.rightIndent = 0;
    style.firstIndent = 0;
    style.lettersBeforeHyphen = 1;
    style.hyphenates = 0;
    style.hangsPunctuation = 0;
    style.autoLeading = 0;
}

Fixed scalarTextLine(Interpreter& interpreter, Fixed length) {
    const TextState& text = interpreter.state.classicText;
    const Fixed blank = interpreter.classicFonts.spaceWidth(text.font->name);
    const Fixed inSizes = callHost(slot::fixedDivide, times(length, 100), text.size);
    return callHost(slot::fixedDivide, inSizes, blank);
}

} // namespace corvane::classic
