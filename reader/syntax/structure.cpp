// Constructs, constants and references.
#include "filters/coding/hex.h"
#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/memory.h"

#include <string>

namespace corvane {

namespace {

/// Pops the `count` topmost objects and the mark below them into a composite, in file order.
void groupObjects(ObjectType type, std::int32_t count) {
    const Ref<Object> elements = allocateRecord<Object>(count);
    for (std::int32_t i = count - 1; i >= 0; --i) {
        elements[static_cast<std::size_t>(i)] = popStack();
    }
    popMark();
    Object object;
    groupedObject(object, type, elements, count);
    pushStack(object);
}

} // namespace

OperatorResult blockOperator(DocumentCache&) {
    const std::int32_t count = countToMark(Mark::hexadecimal);
    std::string digits;
    for (std::int32_t i = count - 1; i >= 0; --i) {
        const Object piece = indexStack(i);
        if (typeObject(piece) != ObjectType::text) {
            failException(Exception::range);
        }
        digits += textObject(piece);
    }
    // A missing last digit counts as 0.
    const std::size_t size = (digits.size() + 1) / 2;
    digits.resize(2 * size, '0');
    BlockOwner bytes(allocateMemory(static_cast<std::int64_t>(size)));
    inputHex({bytes.get().get(), size}, digits);
    clearStack(countStack() - count);
    popMark();
    Object object;
    blockedObject(object, ObjectType::block, bytes.release(), static_cast<std::int32_t>(size));
    pushStack(object);
    return 0;
}

OperatorResult arrayOperator(DocumentCache&) {
    groupObjects(ObjectType::array, countToMark(Mark::array));
    return 0;
}

OperatorResult procedureOperator(DocumentCache&) {
    groupObjects(ObjectType::array, countToMark(Mark::procedure));
    return 0;
}

OperatorResult dictionaryOperator(DocumentCache&) {
    const std::int32_t count = countToMark(Mark::dictionary);
    if (count % 2 != 0) {
        failException(Exception::mark);
    }
    groupObjects(ObjectType::dictionary, count);
    return 0;
}

OperatorResult nullOperator(DocumentCache&) {
    Object object;
    shallowObject(object, ObjectType::null, 0);
    pushStack(object);
    return 0;
}

OperatorResult trueOperator(DocumentCache&) {
    pushBoolean(1);
    return 0;
}

OperatorResult falseOperator(DocumentCache&) {
    pushBoolean(0);
    return 0;
}

OperatorResult referenceOperator(DocumentCache&) {
    checkStack("ii");
    const std::int32_t generation = popInteger();
    const std::int32_t number = popInteger();
    Object object;
    indirectObject(object, number, generation);
    pushStack(object);
    return 0;
}

} // namespace corvane
