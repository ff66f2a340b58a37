#include "reader/classic/kerning.h"

#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"

#include <utility>

namespace corvane::classic {

void adjustTextLine(Interpreter& interpreter, Fixed thousandths) {
    if (interpreter.state.classicText.font->kind == FontKind::type3) {
        return;
    }
    TextLineState& line = interpreter.level.classicText;
    if (line.run == RunHandle::null) {
        failException(Exception::context);
    }
    PendingKern kern{.amount = thousandths / 1000};
    callHost(slot::adjustTextRun, line.run, &kern.position);
    line.kerns.push(kern);
}

void applyKerns(TextLineState& line) {
    constexpr std::int32_t noEnd = -1;
    ChargedList<PendingKern> kerns = std::exchange(line.kerns, {});
    while (!kerns.empty()) {
        const PendingKern kern = kerns.pop();
        callHost(slot::setRunPosition, line.run, kern.position, noEnd);
        Fixed former = 0;
        callHost(slot::getRunKerning, line.run, &former);
        callHost(slot::setRunKerning, line.run, kern.amount);
    }
}

} // namespace corvane::classic
