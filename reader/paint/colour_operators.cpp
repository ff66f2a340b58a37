#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/paint/colour.h"

namespace corvane {

namespace {

Colour popGray() {
    return grayColour(popExtend());
}

Colour popRgb() {
    const Fixed blue = popExtend();
    const Fixed green = popExtend();
    const Fixed red = popExtend();
    return rgbColour(red, green, blue);
}

Colour popCmyk() {
    const Fixed black = popExtend();
    const Fixed yellow = popExtend();
    const Fixed magenta = popExtend();
    const Fixed cyan = popExtend();
    return cmykColour(cyan, magenta, yellow, black);
}

void setFill(GraphicsState& state, const Colour& colour) {
    state.style.fill = colour;
    state.fill = Paint();
}

void setStroke(GraphicsState& state, const Colour& colour) {
    state.style.stroke = colour;
    state.stroke = Paint();
}

} // namespace

void grayFillOperator(Interpreter& interpreter) {
    setFill(interpreter.state, popGray());
}

void grayStrokeOperator(Interpreter& interpreter) {
    setStroke(interpreter.state, popGray());
}

void rgbFillOperator(Interpreter& interpreter) {
    setFill(interpreter.state, popRgb());
}

void rgbStrokeOperator(Interpreter& interpreter) {
    setStroke(interpreter.state, popRgb());
}

void cmykFillOperator(Interpreter& interpreter) {
    setFill(interpreter.state, popCmyk());
}

void cmykStrokeOperator(Interpreter& interpreter) {
    setStroke(interpreter.state, popCmyk());
}

} // namespace corvane
