#include "objects/stack.h"
#include "reader/colour.h"
#include "reader/content_operators.h"
#include "reader/state.h"

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

} // namespace

OperatorResult grayFillOperator(DocumentCache&) {
    state.style.fill = popGray();
    return 0;
}

OperatorResult grayStrokeOperator(DocumentCache&) {
    state.style.stroke = popGray();
    return 0;
}

OperatorResult rgbFillOperator(DocumentCache&) {
    state.style.fill = popRgb();
    return 0;
}

OperatorResult rgbStrokeOperator(DocumentCache&) {
    state.style.stroke = popRgb();
    return 0;
}

OperatorResult cmykFillOperator(DocumentCache&) {
    state.style.fill = popCmyk();
    return 0;
}

OperatorResult cmykStrokeOperator(DocumentCache&) {
    state.style.stroke = popCmyk();
    return 0;
}

} // namespace corvane
