// Reading one indirect object at its place in the file or in an object stream.
#include "reader/syntax/indirect.h"

#include "objects/stack.h"
#include "reader/crypt/decrypt_object.h"
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

/// Takes what is on the stack for the whole object; one without a value is null, as readers have
/// it.
void completeObject(DocumentCache& cache, std::int32_t depth) {
    if (countStack() == depth + 2) {
        nullOperator(cache);
    }
    if (!rules().toleratesMissingEnd || !isComplete(depth)) {
        failException(Exception::structure);
    }
}

/// The same before the head of another object, before the end of the data or before a word that
/// means nothing: readers accept files without "endobj".
void completeWithoutEnd(DocumentCache& cache, std::int32_t depth) {
    completeObject(cache, depth);
    cache.mends.note(Mend::objectEnd, integerObject(indexStack(2)));
}

/// Whether a reference is meant: number and generation stand before its word.
bool followsNumbers() {
    return countStack() > 1 && typeObject(indexStack(0)) == ObjectType::integer &&
           typeObject(indexStack(1)) == ObjectType::integer;
}

/// Takes what stands within a construct and means nothing there.
bool takeUnknown(TokenPusher& pusher, const Keyword* keyword) {
    const bool isUnknown =
        keyword == nullptr || (keyword->handler == referenceOperator && !followsNumbers());
    return isUnknown && pusher.pushUnknownWord();
}

void noteSyntax(DocumentCache& cache, const TokenPusher& pusher, std::int32_t depth) {
    if (pusher.hasMended() && isComplete(depth)) {
        cache.mends.note(Mend::syntax, integerObject(indexStack(2)));
    }
}

/// Whether a token behind the data of a stream belongs to it. What else stands there may be the
/// rest of data that were longer than their Length, in a file that was cut off.
bool endsStream(TokenType type, TokenFilter& tokens) {
    return type == TokenType::keyword &&
           (tokens.bytes() == "endstream" || tokens.bytes() == "endobj");
}

/// Reads tokens until number, generation and object are on the stack.
void readIndirect(DocumentCache& cache, TokenFilter& tokens) {
    TokenPusher pusher = TokenPusher::mending(cache);
    const std::int32_t depth = countStack();
    bool hasData = false;
    for (bool begun = false;;) {
        const TokenType type = tokens.readToken();
        if (hasData && !endsStream(type, tokens)) {
            return completeWithoutEnd(cache, depth);
        }
        if (type != TokenType::keyword && type != TokenType::end) {
            pusher.push(type, tokens);
            continue;
        }
        const Keyword* const keyword =
            type == TokenType::end ? nullptr : objectKeywords().find(tokens.bytes());
        if (type != TokenType::end && takeUnknown(pusher, keyword)) {
            continue;
        }
        if (keyword == nullptr || keyword->handler == endobjOperator ||
            keyword->handler == streamOperator) {
            pusher.closeAll();
            noteSyntax(cache, pusher, depth);
        }
        if (keyword == nullptr) {
            return completeWithoutEnd(cache, depth);
        }
        const bool isHead = keyword->handler == objOperator;
        if (isHead && begun) {
            checkStack("ii");
            clearStack(countStack() - 2);
            return completeWithoutEnd(cache, depth);
        }
        begun = begun || isHead;
        if (keyword->handler == endobjOperator && rules().toleratesMissingEnd) {
            return completeObject(cache, depth);
        }
        if (keyword->handler(cache) != 0) {
            return;
        }
        hasData = rules().toleratesMissingEnd && (hasData || keyword->handler == streamOperator);
    }
}

/// Pushes what the words of an object stream mean that are objects. Others end an object there, but
/// for a stream, which no object stream may hold.
bool pushWord(DocumentCache& cache, TokenPusher& pusher, std::string_view word) {
    const Keyword* const keyword = objectKeywords().find(word);
    if (takeUnknown(pusher, keyword)) {
        return true;
    }
    if (keyword == nullptr || keyword->handler == objOperator ||
        keyword->handler == endobjOperator) {
        return false;
    }
    if (keyword->handler == streamOperator || keyword->handler == endstreamOperator) {
        failException(Exception::structure);
    }
    keyword->handler(cache);
    return true;
}

/// Reads the one object of a stretch of an object stream: it has no head and no end. An empty
/// stretch is null.
ObjectOwner memberAt(DocumentCache& cache, std::int32_t number, const SyntaxPlace& place) {
    FileScope scope(cache, place);
    const StackGuard guard;
    pushMark(Mark::barrier);
    const std::int32_t depth = countStack();
    TokenPusher pusher = TokenPusher::mending(cache);
    // An integer may be the first word of a reference: the stretch is read to its end.
    for (TokenType type = scope.tokens().readToken(); type != TokenType::end;
         type = scope.tokens().readToken()) {
        if (type != TokenType::keyword) {
            pusher.push(type, scope.tokens());
        } else if (!pushWord(cache, pusher, scope.tokens().bytes())) {
            break;
        }
    }
    pusher.closeAll();
    if (pusher.hasMended()) {
        cache.mends.note(Mend::syntax, number);
    }
    if (countStack() == depth) {
        nullOperator(cache);
    }
    clearStack(depth + 1);
    if (typeObject(indexStack(0)) == ObjectType::mark) {
        failException(Exception::structure);
    }
    return ObjectOwner(popStack());
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

bool beginsObject(DocumentCache& cache, std::int32_t offset) {
    FileScope scope(cache, offset);
    return scope.tokens().readToken() == TokenType::integer &&
           scope.tokens().readToken() == TokenType::integer &&
           scope.tokens().readToken() == TokenType::keyword && scope.tokens().bytes() == "obj";
}

FoundObject objectAt(DocumentCache& cache, std::int32_t offset) {
    FileScope scope(cache, offset);
    const StackGuard guard;
    pushMark(Mark::barrier);
    readIndirect(cache, scope.tokens());
    FoundObject found{.object = ObjectOwner(popStack()), .end = scope.tokens().mark()};
    found.generation = popInteger();
    found.number = popInteger();
    return found;
}

ObjectOwner objectCache(DocumentCache& cache, std::int32_t number, std::int32_t generation,
                        ObjectPlace place) {
    if (place.isInStream()) {
        return memberAt(cache, number, placeOfObject(cache, number, place));
    }
    FoundObject found = objectAt(cache, place.offset());
    if (found.number != number || found.generation != generation) {
        failException(Exception::structure);
    }
    decryptObject(cache, found.object.get(), {number, generation});
    return std::move(found.object);
}

} // namespace corvane
