#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/state.h"
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

OperatorResult saveOperator(DocumentCache&) {
    saveState();
    return 0;
}

OperatorResult restoreOperator(DocumentCache&) {
    if (depthState() == 0 && rules().lazyGroups) {
        // Pages with more `Q` than `q` are many; they cost a warning, not an exception each.
        raiseWarning(Warning::operatorFailed);
        return 0;
    }
    restoreState();
    return 0;
}

OperatorResult concatOperator(DocumentCache&) {
    concatState();
    return 0;
}

OperatorResult widthOperator(DocumentCache&) {
    state.lineWidth = popNumber();
    return 0;
}

OperatorResult capOperator(DocumentCache&) {
    state.style.cap = popStyleNumber();
    return 0;
}

OperatorResult joinOperator(DocumentCache&) {
    state.style.join = popStyleNumber();
    return 0;
}

OperatorResult miterOperator(DocumentCache&) {
    const Fixed limit = popExtend();
    if (limit < fixedOne) {
        failException(Exception::type);
    }
    state.style.miterLimit = limit;
    return 0;
}

OperatorResult dashOperator(DocumentCache& cache) {
    const double phase = popNumber();
    const ObjectOwner array(popStack());
    const std::span<Object> lengths = elementsObject(array.get());
    auto dash = state.dash;
    if (lengths.size() > dash.size()) {
        failException(Exception::type);
    }
    dash.fill(0);
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        dash[i] = realNumber(resolveObject(cache, lengths[i]).get());
    }
    state.style.dashCount = static_cast<std::int16_t>(lengths.size());
    state.dashPhase = phase;
    state.dash = dash;
    return 0;
}

OperatorResult flatOperator(DocumentCache&) {
    const Fixed flatness = popExtend();
    if (flatness <= 3 * fixedOne) {
        state.style.resolution = 800 * fixedOne;
    } else if (flatness < 24 * fixedOne) {
        state.style.resolution = callHost(slot::fixedDivide, unitResolution, flatness);
    } else {
        state.style.resolution = 100 * fixedOne;
    }
    return 0;
}

} // namespace corvane
