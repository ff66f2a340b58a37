// Widths of glyphs, which fonts say as well, and what glyphs are drawn with.
#include "reader/content/content_operators.h"

namespace corvane {

void charWidthOperator(Interpreter&) {}

/// The glyph is a shape, which all of is painted in the colour of text.
void cacheDeviceOperator(Interpreter& interpreter) {
    if (interpreter.level.isGlyph) {
        interpreter.level.ignoresColour = true;
        interpreter.state.style.stroke = interpreter.state.style.fill;
        interpreter.state.stroke = interpreter.state.fill;
    }
}

} // namespace corvane
