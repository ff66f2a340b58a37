#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "runtime/rules.h"

namespace corvane {

// Path construction

void moveToOperator(Interpreter& interpreter) {
    const RealPoint point = popRealPoint();
    beginPath(interpreter);
    movetoPath(interpreter, point);
    interpreter.state.currentPoint = point;
}

void lineToOperator(Interpreter& interpreter) {
    const RealPoint point = popRealPoint();
    linetoPath(interpreter, point);
    interpreter.state.currentPoint = point;
}

void curveTo123Operator(Interpreter& interpreter) {
    const RealPoint point = popRealPoint();
    const RealPoint control2 = popRealPoint();
    const RealPoint control1 = popRealPoint();
    curvetoPath(interpreter, control1, control2, point);
    interpreter.state.currentPoint = point;
}

void curveTo23Operator(Interpreter& interpreter) {
    const RealPoint point = popRealPoint();
    const RealPoint control2 = popRealPoint();
    curvetoPath(interpreter, interpreter.state.currentPoint, control2, point);
    interpreter.state.currentPoint = point;
}

void curveTo13Operator(Interpreter& interpreter) {
    const RealPoint point = popRealPoint();
    const RealPoint control1 = popRealPoint();
    curvetoPath(interpreter, control1, point, point);
    interpreter.state.currentPoint = point;
}

void rectangleOperator(Interpreter& interpreter) {
    const RealPoint size = popRealPoint();
    const RealPoint corner = popRealPoint();
    beginPath(interpreter);
    movetoPath(interpreter, corner);
    linetoPath(interpreter, {corner.x + size.x, corner.y});
    linetoPath(interpreter, {corner.x + size.x, corner.y + size.y});
    linetoPath(interpreter, {corner.x, corner.y + size.y});
    closetoPath(interpreter);
    interpreter.state.currentPoint = corner;
}

void closeOperator(Interpreter& interpreter) {
    closetoPath(interpreter);
    if (rules().continuesClosedPaths) {
        interpreter.state.currentPoint = interpreter.level.path.start;
    }
}

// Painting and clipping

void closeFillStrokePathOperator(Interpreter& interpreter) {
    fillPath(interpreter);
    strokePath(interpreter);
    closetoPath(interpreter);
    endPath(interpreter);
}

void fillStrokePathOperator(Interpreter& interpreter) {
    fillPath(interpreter);
    strokePath(interpreter);
    endPath(interpreter);
}

void closeEofillStrokePathOperator(Interpreter& interpreter) {
    eofillPath(interpreter);
    strokePath(interpreter);
    closetoPath(interpreter);
    endPath(interpreter);
}

void eofillStrokePathOperator(Interpreter& interpreter) {
    // Without a rule to carry, this operator alone never warned that it is lost.
    if (rules().evenOddCarried) {
        eofillPath(interpreter);
    } else {
        fillPath(interpreter);
    }
    strokePath(interpreter);
    endPath(interpreter);
}

void closeFillPathOperator(Interpreter& interpreter) {
    fillPath(interpreter);
    closetoPath(interpreter);
    endPath(interpreter);
}

void fillPathOperator(Interpreter& interpreter) {
    fillPath(interpreter);
    endPath(interpreter);
}

void closeEofillPathOperator(Interpreter& interpreter) {
    eofillPath(interpreter);
    closetoPath(interpreter);
    endPath(interpreter);
}

void eofillPathOperator(Interpreter& interpreter) {
    eofillPath(interpreter);
    endPath(interpreter);
}

void resetPathOperator(Interpreter& interpreter) {
    if (!rules().unpaintedStaysOpen) {
        closetoPath(interpreter);
    }
    endPath(interpreter);
}

void closeStrokePathOperator(Interpreter& interpreter) {
    strokePath(interpreter);
    closetoPath(interpreter);
    endPath(interpreter);
}

void strokePathOperator(Interpreter& interpreter) {
    strokePath(interpreter);
    endPath(interpreter);
}

void clipPathOperator(Interpreter& interpreter) {
    clipPath(interpreter);
}

void eoclipPathOperator(Interpreter& interpreter) {
    eoclipPath(interpreter);
}

} // namespace corvane
