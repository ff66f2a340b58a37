// Reading one section of the cross-reference, and its trailer.
#include "objects/stack.h"
#include "reader/document/deferred_entries.h"
#include "reader/document/entries.h"
#include "reader/document/stream_section.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/indirect.h"
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

/// The objects that a table hides from readers of tables alone: in a stream that its trailer names.
/// That is no section of the chain, and its trailer does not count.
void readHidden(DocumentCache& cache, const Object& trailer) {
    const ObjectOwner hidden = lookupObject(cache, trailer, "XRefStm");
    if (typeObject(hidden.get()) != ObjectType::null) {
        readStreamSection(cache, integerObject(hidden.get()));
    }
}

/// Reads a table and its trailer; `end` is then behind the word "startxref".
ObjectOwner readTable(DocumentCache& cache, std::int32_t offset, std::int32_t& end) {
    FileScope scope(cache, offset);
    const StackGuard guard;
    readSection(cache, scope.tokens());
    end = scope.tokens().mark();
    ObjectOwner trailer(popStack());
    refuseEncrypted(cache, trailer.get());
    if (rules().readsObjectStreams) {
        readHidden(cache, trailer.get());
    }
    return trailer;
}

} // namespace

void refuseEncrypted(DocumentCache& cache, const Object& trailer) {
    // What a reference leads to may not be known yet, or be missing: it counts as it stands.
    const auto saysSo = [&](const Object& dictionary) {
        return typeObject(findEntry(cache, dictionary, "Encrypt")) != ObjectType::null;
    };
    const bool isNewest = typeObject(cache.trailer.get()) == ObjectType::empty;
    const bool isRead = rules().readsEncrypted && (isNewest || saysSo(cache.trailer.get()));
    if (!isRead && saysSo(trailer)) {
        failException(Exception::crossReference);
    }
}

SectionFacts xrefCache(DocumentCache& cache, std::int32_t offset) {
    SectionFacts facts;
    ObjectOwner trailer;
    cache.freedHere.clear();
    facts.isStream = rules().readsObjectStreams && beginsObject(cache, offset);
    if (facts.isStream) {
        StreamSection section = readStreamSection(cache, offset);
        trailer = std::move(section.trailer);
        facts.end = section.end;
    } else {
        trailer = readTable(cache, offset, facts.end);
    }
    settleFreed(cache);
    if (cache.deferred) {
        cache.deferred->endSection();
    }
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
