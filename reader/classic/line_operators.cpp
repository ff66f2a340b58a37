#include "reader/classic/line_operators.h"

#include "objects/stack.h"
#include "reader/classic/font_selection.h"
#include "reader/classic/kerning.h"
#include "reader/classic/text_lines.h"
#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <algorithm>

namespace corvane::classic {

namespace {

/// How far from the origin a text matrix leads at most: 60 inches.
constexpr Fixed farthest = 4320 * fixedOne;

/// The state of text, which operators may change between `BT` and `ET`.
TextState& textState(Interpreter& interpreter) {
    if (!interpreter.level.classicText.isOpen) {
        failException(Exception::context);
    }
    return interpreter.state.classicText;
}

/// Moves the text matrix in its own space.
void moveLine(Interpreter& interpreter, Fixed x, Fixed y) {
    Matrix& matrix = interpreter.level.classicText.matrix;
    Matrix move;
    callHost(slot::setIdentityMatrix, &move);
    callHost(slot::setMatrixTranslation, &move, x, y);
    const Matrix former = matrix;
    callHost(slot::multiplyMatrix, &move, &former, &matrix);
}

void showString(Interpreter& interpreter, const Object& string) {
    startsTextLine(interpreter);
    appendTextLine(interpreter, textObject(string));
}

} // namespace

void beginTextOperator(Interpreter& interpreter) {
    TextLineState& text = interpreter.level.classicText;
    if (text.isOpen) {
        failException(Exception::context);
    }
    text = TextLineState();
    text.isOpen = true;
    callHost(slot::setIdentityMatrix, &text.matrix);
}

void endTextOperator(Interpreter& interpreter) {
    textState(interpreter);
    finishTextLine(interpreter);
    interpreter.level.classicText.isOpen = false;
}

void charSpaceOperator(Interpreter& interpreter) {
    textState(interpreter).characterSpacing = popExtend();
}

void wordSpaceOperator(Interpreter& interpreter) {
    textState(interpreter).wordSpacing = popExtend();
}

void scaleOperator(Interpreter& interpreter) {
    textState(interpreter).horizontalScale = popExtend();
}

void leadingOperator(Interpreter& interpreter) {
    textState(interpreter).lineOffsetY = negateFixed(popExtend());
}

void riseOperator(Interpreter& interpreter) {
    textState(interpreter).rise = popExtend();
}

void renderModeOperator(Interpreter& interpreter) {
    constexpr Fixed lastMode = 7 * fixedOne;
    TextState& state = textState(interpreter);
    const Fixed mode = popExtend();
    if (mode < 0 || mode > lastMode || mode % fixedOne != 0) {
        failException(Exception::type);
    }
    state.renderMode = mode / fixedOne;
}

void fontSizeOperator(Interpreter& interpreter) {
    TextState& state = textState(interpreter);
    state.size = popExtend();
    const ObjectOwner name = popLiteral();
    selectFont(interpreter, literalObject(name.get()));
}

void startOfLineOperator(Interpreter& interpreter) {
    textState(interpreter);
    const Fixed y = popExtend();
    const Fixed x = popExtend();
    moveLine(interpreter, x, y);
    finishTextLine(interpreter);
}

void startOfLineLeadingOperator(Interpreter& interpreter) {
    TextState& state = textState(interpreter);
    state.lineOffsetY = popExtend();
    state.lineOffsetX = popExtend();
    moveLine(interpreter, state.lineOffsetX, state.lineOffsetY);
    finishTextLine(interpreter);
}

void setMatrixOperator(Interpreter& interpreter) {
    textState(interpreter);
    Matrix matrix = popMatrix();
    matrix.tx = std::clamp(matrix.tx, -farthest, farthest);
    matrix.ty = std::clamp(matrix.ty, -farthest, farthest);
    interpreter.level.classicText.matrix = matrix;
    finishTextLine(interpreter);
}

void endOfLineOperator(Interpreter& interpreter) {
    const TextState& state = textState(interpreter);
    moveLine(interpreter, state.lineOffsetX, state.lineOffsetY);
    returnTextLine(interpreter);
}

void justifiedRenderOperator(Interpreter& interpreter) {
    textState(interpreter);
    const ObjectOwner string = popText();
    showString(interpreter, string.get());
}

void displacedRenderOperator(Interpreter& interpreter) {
    textState(interpreter);
    const ObjectOwner array(popStack());
    startsTextLine(interpreter);
    for (const Object& element : elementsObject(array.get())) {
        switch (typeObject(element)) {
        case ObjectType::text:
            appendTextLine(interpreter, textObject(element));
            break;
        case ObjectType::integer:
        case ObjectType::fixed:
            adjustTextLine(interpreter, negateFixed(extendObject(element)));
            break;
        default:
            failException(Exception::range);
        }
    }
}

void endOfLinePlainRenderOperator(Interpreter& interpreter) {
    textState(interpreter);
    const ObjectOwner string = popText();
    endOfLineOperator(interpreter);
    showString(interpreter, string.get());
}

void endOfLineJustifiedRenderOperator(Interpreter& interpreter) {
    TextState& state = textState(interpreter);
    const ObjectOwner string = popText();
    state.characterSpacing = popExtend();
    state.wordSpacing = popExtend();
    endOfLineOperator(interpreter);
    showString(interpreter, string.get());
}

} // namespace corvane::classic
