// Marked content and rendering intents: nothing to draw, but something that the page has.
#include "objects/stack.h"
#include "reader/content/content_operators.h"
#include "reader/content/losses.h"
#include "reader/content/omissions.h"

namespace corvane {

void intentOperator(Interpreter&) {
    noteIntentLoss(indexStack(0));
}

void markOperator(Interpreter&) {
    noteOmission(Omission::markedContent);
}

void propertiesOperator(Interpreter&) {
    const bool isLayer = literalObject(indexStack(1)) == "OC";
    noteOmission(isLayer ? Omission::optionalContent : Omission::markedContent);
}

} // namespace corvane
