#include "reader/content/state.h"

#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/memory.h"
#include "runtime/rules.h"

namespace corvane {

GraphicsState state;
Containers containers;

namespace {

/// A copy kept by `q`, and how many `q` in a row kept the same.
struct SavedState {
    GraphicsState state;
    std::int32_t times = 1;
};

struct SavedStates {
    std::deque<SavedState> copies;
    std::int32_t depth = 0;
    ZoneCharge charge;
};
SavedStates saved;

/// Copies are charged this many at a time.
constexpr std::size_t chargeStep = 256;

} // namespace

void openState() {
    closeState();
    state = GraphicsState();
    Art layer = Art::null;
    callHost(slot::getLayerArt, Layer::null, &layer);
    if (layer == Art::null) {
        failException(Exception::host);
    }
    containers.open(layer);
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

void closeState() {
    // Not by assignment of a fresh one: making a deque needs memory, and closing must not fail.
    saved.copies.clear();
    saved.depth = 0;
    saved.charge.resize(0);
    containers.close();
}

void saveState() {
    containers.push();
    ++saved.depth;
    if (!saved.copies.empty() && saved.copies.back().state == state) {
        ++saved.copies.back().times;
        return;
    }
    if (saved.copies.size() % chargeStep == 0) {
        saved.charge.resize(
            static_cast<std::int64_t>((saved.copies.size() + chargeStep) * sizeof(SavedState)));
    }
    saved.copies.push_back({state});
}

void restoreState() {
    if (saved.depth == 0) {
        failException(Exception::underflow);
    }
    SavedState& copy = saved.copies.back();
    state = copy.state;
    --saved.depth;
    if (--copy.times == 0) {
        saved.copies.pop_back();
    }
    containers.pop();
}

std::int32_t depthState() {
    return saved.depth;
}

void concatState() {
    if (rules().exactNumbers) {
        state.exactCtm = multiply(popRealMatrix(), state.exactCtm);
        return;
    }
    const Matrix operand = popMatrix();
    const Matrix former = state.ctm;
    callHost(slot::multiplyMatrix, &operand, &former, &state.ctm);
}

Point transformState(RealPoint point) {
    if (rules().exactNumbers) {
        const RealPoint to = transform(state.exactCtm, point);
        return {fixedFromReal(to.x), fixedFromReal(to.y)};
    }
    const Point from{fixedFromReal(point.x), fixedFromReal(point.y)};
    Point to;
    callHost(slot::transformPoint, &state.ctm, &from, &to);
    return to;
}

double scaleState() {
    if (!rules().exactNumbers) {
        return 1.0;
    }
    return meanStretch(state.exactCtm);
}

} // namespace corvane
