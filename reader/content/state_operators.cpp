#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <array>

namespace corvane {

namespace {

/// Resolution that stands for a flatness of one device pixel, in dots per inch.
constexpr Fixed unitResolution = 2400 * fixedOne;

/// An integer from 0 to 2; anything else raises `type`.
std::int32_t popStyleNumber() {
    const Fixed value = popExtend();
    if (value != 0 && value != fixedOne && value != 2 * fixedOne) {
        failException(Exception::type);
    }
    return value / fixedOne;
}

} // namespace

void saveOperator(Interpreter& interpreter) {
    saveState(interpreter);
}

void restoreOperator(Interpreter& interpreter) {
    if (depthState(interpreter) == 0 && rules().lazyGroups) {
        // Pages with more `Q` than `q` are many; they cost a warning, not an exception each.
        raiseWarning(Warning::operatorFailed);
        return;
    }
    restoreState(interpreter);
}

void concatOperator(Interpreter& interpreter) {
    concatState(interpreter);
}

void widthOperator(Interpreter& interpreter) {
    interpreter.state.lineWidth = popNumber();
}

void capOperator(Interpreter& interpreter) {
    interpreter.state.style.cap = popStyleNumber();
}

void joinOperator(Interpreter& interpreter) {
    interpreter.state.style.join = popStyleNumber();
}

void miterOperator(Interpreter& interpreter) {
    const Fixed limit = popExtend();
    if (limit < fixedOne) {
        failException(Exception::type);
    }
    interpreter.state.style.miterLimit = limit;
}

void dashOperator(Interpreter& interpreter) {
    const double phase = popNumber();
    const ObjectOwner array(popStack());
    const std::span<Object> lengths = elementsObject(array.get());
    auto dash = interpreter.state.dash;
    if (lengths.size() > dash.size()) {
        interpreter.omissions.note(Omission::longDash);
        return;
    }
    dash.fill(0);
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        dash[i] = realNumber(resolveObject(interpreter.cache, lengths[i]).get());
    }
    interpreter.state.style.dashCount = static_cast<std::int16_t>(lengths.size());
    interpreter.state.dashPhase = phase;
    interpreter.state.dash = dash;
}

void flatOperator(Interpreter& interpreter) {
    const Fixed flatness = popExtend();
    if (flatness <= 3 * fixedOne) {
        interpreter.state.style.resolution = 800 * fixedOne;
    } else if (flatness < 24 * fixedOne) {
        interpreter.state.style.resolution = callHost(slot::fixedDivide, unitResolution, flatness);
    } else {
        interpreter.state.style.resolution = 100 * fixedOne;
    }
}

} // namespace corvane
