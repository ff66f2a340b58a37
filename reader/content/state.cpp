#include "reader/content/state.h"

#include "reader/content/interpreter.h"
#include "reader/paint/path_aside.h"
#include "reader/paint/path_space.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

#include <cmath>

namespace corvane {

namespace {

/// Copies are charged this many at a time.
constexpr std::size_t chargeStep = 256;

void popCopy(Interpreter& interpreter) noexcept {
    SavedStates& saved = interpreter.saved;
    SavedState& copy = saved.copies.back();
    interpreter.state = copy.state;
    --saved.depth;
    if (--copy.times == 0) {
        saved.copies.pop_back();
    }
}

/// What the state says of the path under construction outlives a `Q` within that path.
void keepPathState(GraphicsState& state, const GraphicsState& former) {
    state.currentPoint = former.currentPoint;
    state.style.fillPaint = former.style.fillPaint;
    state.style.strokePaint = former.style.strokePaint;
    state.style.clip = former.style.clip;
    state.clipRule = former.clipRule;
}

/// Points of the artboard that artwork can hold: those of 16.16 numbers.
constexpr double farthest = 32768;

} // namespace

void openState(Interpreter& interpreter) {
    Art layer = Art::null;
    callHost(slot::getLayerArt, Layer::null, &layer);
    if (layer == Art::null) {
        failException(Exception::host);
    }
    openState(interpreter, layer);
}

GraphicsState initialState() {
    GraphicsState state;
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
    return state;
}

void openState(Interpreter& interpreter, Art group) {
    interpreter.saved = SavedStates();
    interpreter.containers.open(group);
    interpreter.state = initialState();
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
    if (rules().lazyGroups && interpreter.level.path.compound != Art::null) {
        const GraphicsState former = interpreter.state;
        popCopy(interpreter);
        keepPathState(interpreter.state, former);
        followSpace(interpreter, former.exactCtm);
    } else {
        popCopy(interpreter);
    }
    const Art ofPath = takePathAside(interpreter);
    interpreter.containers.pop();
    putPathBack(interpreter, ofPath);
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
        const RealMatrix former = state.exactCtm;
        state.exactCtm = multiply(popRealMatrix(), former);
        followSpace(interpreter, former);
        return;
    }
    const Matrix operand = popMatrix();
    const Matrix former = state.ctm;
    callHost(slot::multiplyMatrix, &operand, &former, &state.ctm);
}

Point transformState(Interpreter& interpreter, RealPoint point) {
    const GraphicsState& state = interpreter.state;
    if (rules().exactNumbers) {
        const RealPoint to = transform(state.exactCtm, point);
        if (!(std::abs(to.x) <= farthest && std::abs(to.y) <= farthest)) {
            interpreter.omissions.note(Omission::farPoint);
        }
        return {fixedFromReal(to.x), fixedFromReal(to.y)};
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
    return meanStretch(state.exactCtm);
}

} // namespace corvane
