// Words that stand for operands.
#include "reader/content/content_operators.h"
#include "reader/syntax/syntax.h"

namespace corvane {

void nullOperand(Interpreter& interpreter) {
    nullOperator(interpreter.cache);
}

void trueOperand(Interpreter& interpreter) {
    trueOperator(interpreter.cache);
}

void falseOperand(Interpreter& interpreter) {
    falseOperator(interpreter.cache);
}

} // namespace corvane
