#include "reader/document/repair.h"

#include "objects/stack.h"
#include "reader/document/object_search.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/syntax.h"
#include "reader/syntax/token_push.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <utility>

namespace corvane {

namespace {

struct FoundDictionary {
    ObjectOwner dictionary; ///< an empty object where something else stands there
    bool ofStream = false;
};

FoundDictionary dictionaryAt(DocumentCache& cache, std::int32_t offset) {
    FileScope scope(cache, offset);
    const StackGuard guard;
    TokenPusher pusher(cache);
    const std::int32_t depth = countStack();
    do {
        const TokenType type = scope.tokens().readToken();
        if (type == TokenType::end) {
            failException(Exception::structure);
        }
        if (type != TokenType::keyword) {
            pusher.push(type, scope.tokens());
        } else if (const Keyword* const keyword = objectKeywords().find(scope.tokens().bytes())) {
            keyword->handler(cache);
        }
    } while (countStack() != depth + 1 || typeObject(indexStack(0)) == ObjectType::mark);
    ObjectOwner object(popStack());
    if (typeObject(object.get()) != ObjectType::dictionary) {
        return {};
    }
    const TokenType type = scope.tokens().readToken();
    return {std::move(object), type == TokenType::keyword && scope.tokens().bytes() == "stream"};
}

/// Whether the dictionary itself says what was mentioned. One that cannot be read is taken to:
/// a page without the objects of an object stream would look right and be wrong.
bool isMeant(DocumentCache& cache, const Mention& mention) {
    bool meant = false;
    const bool readable = attempted([&] {
        const FoundDictionary found = dictionaryAt(cache, mention.head);
        if (typeObject(found.dictionary.get()) != ObjectType::dictionary) {
            return;
        }
        if (mention.code == Exception::crossReference) {
            meant =
                typeObject(findEntry(cache, found.dictionary.get(), "Encrypt")) != ObjectType::null;
        } else {
            const Object type = findEntry(cache, found.dictionary.get(), "Type");
            meant = found.ofStream && typeObject(type) == ObjectType::literal &&
                    literalObject(type) == "ObjStm";
        }
    });
    return meant || !readable;
}

bool isCatalog(DocumentCache& cache, const Object& object) {
    if (typeObject(object) != ObjectType::dictionary) {
        return false;
    }
    const Object pages = findEntry(cache, object, "Pages");
    return typeObject(resolveObject(cache, pages).get()) == ObjectType::dictionary;
}

/// Takes the dictionary as the trailer, if it leads to a catalog.
bool takeTrailer(DocumentCache& cache, ObjectOwner dictionary) {
    bool good = false;
    attempted([&] {
        good = typeObject(dictionary.get()) == ObjectType::dictionary &&
               isCatalog(cache, lookupObject(cache, dictionary.get(), "Root").get());
    });
    if (good) {
        cache.trailer = std::move(dictionary);
    }
    return good;
}

/// A trailer that names `root` as the catalog.
ObjectOwner madeTrailer(DocumentCache& cache, std::int32_t number, std::int32_t generation) {
    pushMark(Mark::dictionary);
    pushLiteral("Root");
    Object root;
    indirectObject(root, number, generation);
    pushStack(root);
    dictionaryOperator(cache);
    return ObjectOwner(popStack());
}

bool searchCatalog(DocumentCache& cache) {
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        bool found = false;
        attempted([&] {
            Object reference;
            indirectObject(reference, node->number, node->generation());
            const ObjectOwner owner(reference);
            found = isCatalog(cache, resolveObject(cache, reference).get());
        });
        if (found) {
            cache.trailer = madeTrailer(cache, node->number, node->generation());
            return true;
        }
        forgetObject(cache, node->number, node->generation());
    }
    return false;
}

} // namespace

void repairCache(DocumentCache& cache) {
    raiseWarning(Warning::repaired);
    cache.repaired = true;
    const SearchResult result = searchFile(cache);
    for (const Mention& mention : result.mentions) {
        if (isMeant(cache, mention)) {
            failException(mention.code);
        }
    }
    bool found = false;
    for (auto at = result.trailers.rbegin(); at != result.trailers.rend(); ++at) {
        FoundDictionary trailer;
        if (!attempted([&] { trailer = dictionaryAt(cache, *at); }) ||
            typeObject(trailer.dictionary.get()) != ObjectType::dictionary) {
            continue;
        }
        // Whichever trailer leads to the catalog: one that is encrypted speaks for the file.
        refuseEncrypted(cache, trailer.dictionary.get());
        found = found || takeTrailer(cache, std::move(trailer.dictionary));
    }
    if (!found && !searchCatalog(cache)) {
        failException(Exception::structure);
    }
}

} // namespace corvane
