// Cross-reference sections: entries, the trailer and what ends them.
#include "objects/identity.h"
#include "objects/stack.h"
#include "reader/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

namespace corvane {

namespace {

/// One entry. The subsection's first number and count stay below the entries until the last was
/// read.
void readEntry(DocumentCache& cache, bool used) {
    checkStack("iiii");
    const std::int32_t generation = popInteger();
    const std::int32_t offset = popInteger();
    const std::int32_t count = popInteger();
    const std::int32_t number = popInteger();
    if (number < 0 || number > budget::objectNumber) {
        failException(Exception::structure);
    }
    usedIdentity(number);
    if (used) {
        nodeReference(*cache.references, number, generation, offset);
    } else {
        freeReference(*cache.references, number, generation, offset);
    }
    if (count > 1) {
        pushInteger(number + 1);
        pushInteger(count - 1);
    }
}

} // namespace

OperatorResult xrefOperator(DocumentCache&) {
    return 0;
}

OperatorResult freeOperator(DocumentCache& cache) {
    readEntry(cache, false);
    return 0;
}

OperatorResult nodeOperator(DocumentCache& cache) {
    readEntry(cache, true);
    return 0;
}

OperatorResult trailerOperator(DocumentCache&) {
    if (rules().toleratesSubsections) {
        clearStack();
    }
    if (countStack() != 0) {
        failException(Exception::structure);
    }
    return 0;
}

OperatorResult startxrefOperator(DocumentCache&) {
    checkStack("d");
    return 1;
}

} // namespace corvane
