#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/paint/colour.h"
#include "reader/paint/space_colour.h"

#include <utility>

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

/// The colour that operands of a device space say, as the default space in its place shows it.
void setColour(Interpreter& interpreter, Paint& paint, Colour& colour, ColourSpace::Kind device,
               Colour (*popDevice)()) {
    ColourSpacePointer space = interpreter.colourSpaces.defaults().inForce().of(device);
    if (space == nullptr) {
        colour = popDevice();
        paint = Paint();
        return;
    }
    paint = Paint{.space = std::move(space)};
    takeColour(interpreter, paint, colour);
}

void setFill(Interpreter& interpreter, ColourSpace::Kind device, Colour (*popDevice)()) {
    GraphicsState& state = interpreter.state;
    setColour(interpreter, state.fill, state.style.fill, device, popDevice);
}

void setStroke(Interpreter& interpreter, ColourSpace::Kind device, Colour (*popDevice)()) {
    GraphicsState& state = interpreter.state;
    setColour(interpreter, state.stroke, state.style.stroke, device, popDevice);
}

} // namespace

void grayFillOperator(Interpreter& interpreter) {
    setFill(interpreter, ColourSpace::Kind::gray, popGray);
}

void grayStrokeOperator(Interpreter& interpreter) {
    setStroke(interpreter, ColourSpace::Kind::gray, popGray);
}

void rgbFillOperator(Interpreter& interpreter) {
    setFill(interpreter, ColourSpace::Kind::rgb, popRgb);
}

void rgbStrokeOperator(Interpreter& interpreter) {
    setStroke(interpreter, ColourSpace::Kind::rgb, popRgb);
}

void cmykFillOperator(Interpreter& interpreter) {
    setFill(interpreter, ColourSpace::Kind::cmyk, popCmyk);
}

void cmykStrokeOperator(Interpreter& interpreter) {
    setStroke(interpreter, ColourSpace::Kind::cmyk, popCmyk);
}

} // namespace corvane
