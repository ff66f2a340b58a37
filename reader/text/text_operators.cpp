// Operators of text in the extended profile: its state, its matrices, and what shows it (PDF
// Reference, 5.2 and 5.3). For a host without slots for text, what shows text is only counted.
// The original profile has its own: reader/classic/line_operators.h.
#include "host/matrix.h"
#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/syntax/syntax.h"
#include "reader/text/page_fonts.h"
#include "reader/text/show_text.h"

#include <array>
#include <cmath>

namespace corvane {

namespace {

TextObject& textOf(Interpreter& interpreter) {
    return interpreter.level.text;
}

void moveLine(Interpreter& interpreter, double x, double y) {
    TextObject& text = textOf(interpreter);
    const RealPoint origin = transform(text.lineMatrix, {x, y});
    text.lineMatrix.tx = origin.x;
    text.lineMatrix.ty = origin.y;
    text.matrix = text.lineMatrix;
}

void showString(Interpreter& interpreter) {
    const ObjectOwner string(popStack());
    const std::array elements{string.get()};
    showText(interpreter, elements);
}

} // namespace

void beginTextOperator(Interpreter& interpreter) {
    textOf(interpreter).matrix = RealMatrix();
    textOf(interpreter).lineMatrix = RealMatrix();
}

void endTextOperator(Interpreter& interpreter) {
    interpreter.level.endedText = endClipText(interpreter);
}

void charSpaceOperator(Interpreter& interpreter) {
    interpreter.state.text.characterSpacing = popNumber();
}

void wordSpaceOperator(Interpreter& interpreter) {
    interpreter.state.text.wordSpacing = popNumber();
}

void scaleOperator(Interpreter& interpreter) {
    interpreter.state.text.horizontalScale = popNumber() / 100;
}

void leadingOperator(Interpreter& interpreter) {
    interpreter.state.text.leading = popNumber();
}

void riseOperator(Interpreter& interpreter) {
    interpreter.state.text.rise = popNumber();
}

void renderModeOperator(Interpreter& interpreter) {
    constexpr double lastMode = 7;
    const double mode = popNumber();
    if (mode >= 0 && mode <= lastMode) {
        interpreter.state.text.renderMode = static_cast<std::int32_t>(mode);
    }
}

void fontSizeOperator(Interpreter& interpreter) {
    TextState& text = interpreter.state.text;
    text.size = popNumber();
    const ObjectOwner name = popLiteral();
    if (interpreter.readsText) {
        text.font = interpreter.fonts.find(interpreter.cache, literalObject(name.get()));
    }
}

void startOfLineOperator(Interpreter& interpreter) {
    const RealPoint to = popRealPoint();
    moveLine(interpreter, to.x, to.y);
}

void startOfLineLeadingOperator(Interpreter& interpreter) {
    const RealPoint to = popRealPoint();
    interpreter.state.text.leading = -to.y;
    moveLine(interpreter, to.x, to.y);
}

void setMatrixOperator(Interpreter& interpreter) {
    textOf(interpreter).lineMatrix = popRealMatrix();
    textOf(interpreter).matrix = textOf(interpreter).lineMatrix;
}

void endOfLineOperator(Interpreter& interpreter) {
    moveLine(interpreter, 0, -interpreter.state.text.leading);
}

void justifiedRenderOperator(Interpreter& interpreter) {
    showString(interpreter);
}

void displacedRenderOperator(Interpreter& interpreter) {
    const ObjectOwner array(popStack());
    showText(interpreter, elementsObject(array.get()));
}

void endOfLinePlainRenderOperator(Interpreter& interpreter) {
    endOfLineOperator(interpreter);
    showString(interpreter);
}

void endOfLineJustifiedRenderOperator(Interpreter& interpreter) {
    const ObjectOwner string(popStack());
    interpreter.state.text.characterSpacing = popNumber();
    interpreter.state.text.wordSpacing = popNumber();
    endOfLineOperator(interpreter);
    const std::array elements{string.get()};
    showText(interpreter, elements);
}

} // namespace corvane
