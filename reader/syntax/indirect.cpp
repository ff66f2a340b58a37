// Reading one indirect object at its place in the file.
#include "objects/stack.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/token_push.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

namespace corvane {

namespace {

/// Whether number, generation and one whole object are on the stack, and nothing else of this
/// object.
bool isComplete(std::int32_t depth) {
    return countStack() == depth + 3 && typeObject(indexStack(2)) == ObjectType::integer &&
           typeObject(indexStack(1)) == ObjectType::integer;
}

/// Takes what stands before the head of another object, or before the end of the data, for the
/// whole object: readers accept files without "endobj", and objects without a value, which are
/// null.
void completeObject(DocumentCache& cache, std::int32_t depth) {
    if (countStack() == depth + 2) {
        nullOperator(cache);
    }
    if (!rules().toleratesMissingEnd || !isComplete(depth)) {
        failException(Exception::structure);
    }
}

/// Reads tokens until number, generation and object are on the stack.
void readIndirect(DocumentCache& cache, TokenFilter& tokens) {
    TokenPusher pusher(cache);
    const std::int32_t depth = countStack();
    for (bool begun = false;;) {
        const TokenType type = tokens.readToken();
        if (type != TokenType::keyword && type != TokenType::end) {
            pusher.push(type, tokens);
            continue;
        }
        const Keyword* const keyword =
            type == TokenType::end ? nullptr : objectKeywords().find(tokens.bytes());
        if (keyword == nullptr) {
            return completeObject(cache, depth);
        }
        const bool isHead = keyword->handler == objOperator;
        if (isHead && begun) {
            checkStack("ii");
            clearStack(countStack() - 2);
            return completeObject(cache, depth);
        }
        begun = begun || isHead;
        if (keyword->handler == endobjOperator && rules().toleratesMissingEnd) {
            return completeObject(cache, depth);
        }
        if (keyword->handler(cache) != 0) {
            return;
        }
    }
}

} // namespace

OperatorResult objOperator(DocumentCache&) {
    checkStack("ii");
    return 0;
}

OperatorResult endobjOperator(DocumentCache&) {
    checkStack("ii?");
    return 1;
}

ObjectOwner objectCache(DocumentCache& cache, std::int32_t number, std::int32_t generation,
                        ObjectPlace place) {
    FileScope scope(cache, place.offset());
    const StackGuard guard;
    pushMark(Mark::barrier);
    readIndirect(cache, scope.tokens());
    ObjectOwner object(popStack());
    const std::int32_t foundGeneration = popInteger();
    const std::int32_t foundNumber = popInteger();
    if (foundNumber != number || foundGeneration != generation) {
        failException(Exception::structure);
    }
    return object;
}

} // namespace corvane
