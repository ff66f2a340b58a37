#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/state.h"
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

OperatorResult setFill(const Colour& colour) {
    state.style.fill = colour;
    state.fill = Paint();
    return 0;
}

OperatorResult setStroke(const Colour& colour) {
    state.style.stroke = colour;
    state.stroke = Paint();
    return 0;
}

} // namespace

OperatorResult grayFillOperator(DocumentCache&) {
    return setFill(popGray());
}

OperatorResult grayStrokeOperator(DocumentCache&) {
    return setStroke(popGray());
}

OperatorResult rgbFillOperator(DocumentCache&) {
    return setFill(popRgb());
}

OperatorResult rgbStrokeOperator(DocumentCache&) {
    return setStroke(popRgb());
}

OperatorResult cmykFillOperator(DocumentCache&) {
    return setFill(popCmyk());
}

OperatorResult cmykStrokeOperator(DocumentCache&) {
    return setStroke(popCmyk());
}

} // namespace corvane
