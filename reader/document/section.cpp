// Reading one section of the cross-reference, and the trailer behind it.
#include "objects/stack.h"
#include "reader/document/entries.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/token_push.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

namespace corvane {

namespace {

/// Reads tokens until the trailer is on the stack.
void readSection(DocumentCache& cache, TokenFilter& tokens) {
    TokenPusher pusher(cache);
    for (;;) {
        const TokenType type = tokens.readToken();
        if (type == TokenType::end) {
            // A section that lacks "startxref" is complete all the same, if its trailer is.
            startxrefOperator(cache);
            return;
        }
        if (type != TokenType::keyword) {
            pusher.push(type, tokens);
            readRegularEntries(cache, tokens);
            continue;
        }
        const Keyword* const keyword = crossReferenceKeywords().find(tokens.bytes());
        if (keyword == nullptr) {
            failException(Exception::structure);
        }
        if (keyword->handler(cache) != 0) {
            return;
        }
    }
}

} // namespace

void refuseEncrypted(DocumentCache& cache, const Object& trailer) {
    // What a reference leads to may not be known yet, or be missing: it counts as it stands.
    if (typeObject(findEntry(cache, trailer, "Encrypt")) != ObjectType::null) {
        failException(Exception::crossReference);
    }
}

SectionFacts xrefCache(DocumentCache& cache, std::int32_t offset) {
    FileScope scope(cache, offset);
    const StackGuard guard;
    readSection(cache, scope.tokens());
    SectionFacts facts;
    facts.end = scope.tokens().mark();
    ObjectOwner trailer(popStack());
    refuseEncrypted(cache, trailer.get());
    const ObjectOwner previous = lookupObject(cache, trailer.get(), "Prev");
    if (typeObject(previous.get()) != ObjectType::null) {
        facts.previous = integerObject(previous.get());
    }
    if (typeObject(cache.trailer.get()) == ObjectType::empty) {
        cache.trailer = std::move(trailer);
    }
    return facts;
}

} // namespace corvane
