#include "reader/content/interpreter.h"

#include "reader/classic/text_lines.h"
#include "reader/content/losses.h"

#include <utility>

namespace corvane {

ContentScope::ContentScope(Interpreter& interpreter, ObjectOwner resources, bool inheritsDefaults)
    : interpreter_(interpreter), defaults_(interpreter.cache, resources.get(), inheritsDefaults),
      formerLevel_(std::exchange(interpreter.level, ContentLevel(interpreter.cache))),
      formerResources_(std::exchange(interpreter.cache.resources, std::move(resources))) {
    interpreter.level.floor = interpreter.saved.depth;
    interpreter.level.base = interpreter.state.exactCtm;
    interpreter.level.area = formerLevel_.area;
    if (defaults_.isOther()) {
        noteDefaultSpaces(interpreter);
    }
}

void ContentScope::leave() {
    clearStack();
    classic::finishTextLine(interpreter_);
    dropPath(interpreter_);
    while (interpreter_.saved.depth > interpreter_.level.floor) {
        restoreState(interpreter_);
    }
}

ContentScope::~ContentScope() {
    abandonStates(interpreter_, interpreter_.level.floor);
    interpreter_.level = std::move(formerLevel_);
    interpreter_.cache.resources = std::move(formerResources_);
}

} // namespace corvane
