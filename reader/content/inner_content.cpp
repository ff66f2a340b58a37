#include "reader/content/inner_content.h"

#include "reader/content/content.h"
#include "reader/content/content_trace.h"
#include "runtime/budget.h"

#include <algorithm>
#include <span>
#include <utility>

namespace corvane {

namespace {} // namespace

bool InnerContent::mayEnter(const Interpreter& interpreter, std::int32_t object) {
    const std::vector<std::int32_t>& open = interpreter.openContents;
    const bool isOpen = object != 0 && std::ranges::find(open, object) != open.end();
    return !isOpen && open.size() < budget::contentNesting;
}

InnerContent::InnerContent(Interpreter& interpreter, std::int32_t object,
                           const GraphicsState& state, const RealMatrix& matrix, Art group)
    : interpreter_(interpreter), formerState_(interpreter.state),
      place_(interpreter.progress.place()) {
    Containers own;
    own.open(group, interpreter.containers.nesting());
    interpreter.openContents.push_back(object);
    interpreter.state = state;
    interpreter.state.exactCtm = matrix;
    formerContainers_ = std::exchange(interpreter.containers, std::move(own));
}

InnerContent::~InnerContent() {
    interpreter_.containers = std::move(formerContainers_);
    interpreter_.progress.setPlace(place_);
    interpreter_.state = std::move(formerState_);
    interpreter_.openContents.pop_back();
}

InnerContent::Scope::Scope(Interpreter& interpreter, const Object& resources, bool inheritsDefaults)
    : ContentScope(interpreter,
                   sharedObject(typeObject(resources) == ObjectType::dictionary
                                    ? resources
                                    : interpreter.cache.resources.get()),
                   inheritsDefaults) {}

void InnerContent::runStream(const Object& stream) {
    const ObjectOwner owner = sharedObject(stream);
    ContentTrace* const trace = interpreter_.level.trace;
    if (trace != nullptr) {
        trace->begin(interpreter_);
    }
    runContent(interpreter_, std::span(&owner, 1));
    if (trace != nullptr) {
        trace->end(interpreter_);
    }
}

} // namespace corvane
