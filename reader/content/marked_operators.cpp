// Marked content and rendering intents: nothing to draw, but something that the page has.
#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/losses.h"

namespace corvane {

void intentOperator(Interpreter& interpreter) {
    noteIntentLoss(interpreter, indexStack(0));
}

void markOperator(Interpreter& interpreter) {
    interpreter.omissions.note(Omission::markedContent);
}

void propertiesOperator(Interpreter& interpreter) {
    const bool isLayer = literalObject(indexStack(1)) == "OC";
    interpreter.omissions.note(isLayer ? Omission::optionalContent : Omission::markedContent);
}

} // namespace corvane
