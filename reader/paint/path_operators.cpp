#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/state.h"
#include "reader/paint/path.h"
#include "runtime/rules.h"

namespace corvane {

// Path construction

OperatorResult moveToOperator(DocumentCache&) {
    const RealPoint point = popRealPoint();
    beginPath();
    movetoPath(point);
    state.currentPoint = point;
    return 0;
}

OperatorResult lineToOperator(DocumentCache&) {
    const RealPoint point = popRealPoint();
    linetoPath(point);
    state.currentPoint = point;
    return 0;
}

OperatorResult curveTo123Operator(DocumentCache&) {
    const RealPoint point = popRealPoint();
    const RealPoint control2 = popRealPoint();
    const RealPoint control1 = popRealPoint();
    curvetoPath(control1, control2, point);
    state.currentPoint = point;
    return 0;
}

OperatorResult curveTo23Operator(DocumentCache&) {
    const RealPoint point = popRealPoint();
    const RealPoint control2 = popRealPoint();
    curvetoPath(state.currentPoint, control2, point);
    state.currentPoint = point;
    return 0;
}

OperatorResult curveTo13Operator(DocumentCache&) {
    const RealPoint point = popRealPoint();
    const RealPoint control1 = popRealPoint();
    curvetoPath(control1, point, point);
    state.currentPoint = point;
    return 0;
}

OperatorResult rectangleOperator(DocumentCache&) {
    const RealPoint size = popRealPoint();
    const RealPoint corner = popRealPoint();
    beginPath();
    movetoPath(corner);
    linetoPath({corner.x + size.x, corner.y});
    linetoPath({corner.x + size.x, corner.y + size.y});
    linetoPath({corner.x, corner.y + size.y});
    closetoPath();
    state.currentPoint = corner;
    return 0;
}

OperatorResult closeOperator(DocumentCache&) {
    closetoPath();
    if (rules().continuesClosedPaths) {
        state.currentPoint = startPath();
    }
    return 0;
}

// Painting and clipping

OperatorResult closeFillStrokePathOperator(DocumentCache&) {
    fillPath();
    strokePath();
    closetoPath();
    endPath();
    return 0;
}

OperatorResult fillStrokePathOperator(DocumentCache&) {
    fillPath();
    strokePath();
    endPath();
    return 0;
}

OperatorResult closeEofillStrokePathOperator(DocumentCache&) {
    eofillPath();
    strokePath();
    closetoPath();
    endPath();
    return 0;
}

OperatorResult eofillStrokePathOperator(DocumentCache&) {
    // Without a rule to carry, this operator alone never warned that it is lost.
    if (rules().evenOddCarried) {
        eofillPath();
    } else {
        fillPath();
    }
    strokePath();
    endPath();
    return 0;
}

OperatorResult closeFillPathOperator(DocumentCache&) {
    fillPath();
    closetoPath();
    endPath();
    return 0;
}

OperatorResult fillPathOperator(DocumentCache&) {
    fillPath();
    endPath();
    return 0;
}

OperatorResult closeEofillPathOperator(DocumentCache&) {
    eofillPath();
    closetoPath();
    endPath();
    return 0;
}

OperatorResult eofillPathOperator(DocumentCache&) {
    eofillPath();
    endPath();
    return 0;
}

OperatorResult resetPathOperator(DocumentCache&) {
    if (!rules().unpaintedStaysOpen) {
        closetoPath();
    }
    endPath();
    return 0;
}

OperatorResult closeStrokePathOperator(DocumentCache&) {
    strokePath();
    closetoPath();
    endPath();
    return 0;
}

OperatorResult strokePathOperator(DocumentCache&) {
    strokePath();
    endPath();
    return 0;
}

OperatorResult clipPathOperator(DocumentCache&) {
    clipPath();
    return 0;
}

OperatorResult eoclipPathOperator(DocumentCache&) {
    eoclipPath();
    return 0;
}

} // namespace corvane
