#include "reader/content/state.h"

#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

#include <cmath>

namespace corvane {

namespace {

/// Copies are charged this many at a time.
constexpr std::size_t chargeStep = 256;

RealMatrix multiplied(const RealMatrix& first, const RealMatrix& second) {
    return {.a = first.a * second.a + first.b * second.c,
            .b = first.a * second.b + first.b * second.d,
            .c = first.c * second.a + first.d * second.c,
            .d = first.c * second.b + first.d * second.d,
            .tx = first.tx * second.a + first.ty * second.c + second.tx,
            .ty = first.tx * second.b + first.ty * second.d + second.ty};
}

void popCopy(Interpreter& interpreter) noexcept {
    SavedStates& saved = interpreter.saved;
    SavedState& copy = saved.copies.back();
    interpreter.state = copy.state;
    --saved.depth;
    if (--copy.times == 0) {
        saved.copies.pop_back();
    }
}

} // namespace

void openState(Interpreter& interpreter) {
    interpreter.saved = SavedStates();
    GraphicsState& state = interpreter.state = GraphicsState();
    Art layer = Art::null;
    callHost(slot::getLayerArt, Layer::null, &layer);
    if (layer == Art::null) {
        failException(Exception::host);
    }
    interpreter.containers.open(layer);
    callHost(slot::setIdentityMatrix, &state.ctm);
    callHost(slot::getDefaultStyle, &state.style);
    const PathStyle initial;
    state.style.fillPaint = 0;
    state.style.strokePaint = 0;
    state.style.fill = initial.fill;
    state.style.stroke = initial.stroke;
    state.style.dashCount = 0;
    state.style.cap = initial.cap;
    state.style.join = initial.join;
    state.style.miterLimit = initial.miterLimit;
    state.style.clip = 0;
    state.style.resolution = initial.resolution;
    state.style.rule = FillRule::nonzero;
}

void saveState(Interpreter& interpreter) {
    SavedStates& saved = interpreter.saved;
    interpreter.containers.push();
    if (!saved.copies.empty() && saved.copies.back().state == interpreter.state) {
        ++saved.copies.back().times;
    } else {
        if (saved.copies.size() % chargeStep == 0) {
            saved.charge.resize(
                static_cast<std::int64_t>((saved.copies.size() + chargeStep) * sizeof(SavedState)));
        }
        saved.copies.push_back({interpreter.state});
    }
    ++saved.depth; // not before the copy is there, which may find no memory
}

void restoreState(Interpreter& interpreter) {
    if (depthState(interpreter) == 0) {
        failException(Exception::underflow);
    }
    popCopy(interpreter);
    interpreter.containers.pop();
}

std::int32_t depthState(const Interpreter& interpreter) {
    return interpreter.saved.depth - interpreter.level.floor;
}

void abandonStates(Interpreter& interpreter, std::int32_t depth) noexcept {
    while (interpreter.saved.depth > depth) {
        popCopy(interpreter);
        interpreter.containers.abandon();
    }
}

void concatState(Interpreter& interpreter) {
    GraphicsState& state = interpreter.state;
    if (rules().exactNumbers) {
        state.exactCtm = multiplied(popRealMatrix(), state.exactCtm);
        return;
    }
    const Matrix operand = popMatrix();
    const Matrix former = state.ctm;
    callHost(slot::multiplyMatrix, &operand, &former, &state.ctm);
}

Point transformState(const GraphicsState& state, RealPoint point) {
    if (rules().exactNumbers) {
        const RealMatrix& m = state.exactCtm;
        return {fixedFromReal(m.a * point.x + m.c * point.y + m.tx),
                fixedFromReal(m.b * point.x + m.d * point.y + m.ty)};
    }
    const Point from{fixedFromReal(point.x), fixedFromReal(point.y)};
    Point to;
    callHost(slot::transformPoint, &state.ctm, &from, &to);
    return to;
}

double scaleState(const GraphicsState& state) {
    if (!rules().exactNumbers) {
        return 1.0;
    }
    const RealMatrix& m = state.exactCtm;
    return std::sqrt(std::abs(m.a * m.d - m.b * m.c));
}

} // namespace corvane
