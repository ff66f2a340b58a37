#include "reader/document/repair.h"

#include "objects/identity.h"
#include "objects/stack.h"
#include "reader/crypt/open_encryption.h"
#include "reader/document/object_search.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/syntax.h"
#include "reader/syntax/token_push.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

namespace {

struct FoundDictionary {
    ObjectOwner dictionary; ///< an empty object where something else stands there
    bool ofStream = false;
};

FoundDictionary dictionaryAt(DocumentCache& cache, std::int32_t offset) {
    FileScope scope(cache, offset);
    const StackGuard guard;
    TokenPusher pusher = TokenPusher::mending(cache);
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
        } else {
            pusher.pushUnknownWord();
        }
    } while (countStack() != depth + 1 || typeObject(indexStack(0)) == ObjectType::mark);
    ObjectOwner object(popStack());
    if (typeObject(object.get()) != ObjectType::dictionary) {
        return {};
    }
    const TokenType type = scope.tokens().readToken();
    return {std::move(object), type == TokenType::keyword && scope.tokens().bytes() == "stream"};
}

bool isOfType(DocumentCache& cache, const FoundDictionary& found, std::string_view name) {
    const Object type = findEntry(cache, found.dictionary.get(), "Type");
    return found.ofStream && typeObject(type) == ObjectType::literal && literalObject(type) == name;
}

bool saysEncrypted(DocumentCache& cache, const Object& dictionary) {
    return typeObject(findEntry(cache, dictionary, "Encrypt")) != ObjectType::null;
}

/// Whether the dictionary itself says what was mentioned. Of encryption one that cannot be read is
/// taken to: a page read without the keys would be wrong.
bool isMeant(DocumentCache& cache, const Mention& mention) {
    bool meant = false;
    const bool readable = attempted([&] {
        const FoundDictionary found = dictionaryAt(cache, mention.head);
        if (typeObject(found.dictionary.get()) != ObjectType::dictionary) {
            return;
        }
        switch (mention.what) {
        case Mentioned::objectStream:
            meant = isOfType(cache, found, "ObjStm");
            break;
        case Mentioned::sectionStream:
            meant = isOfType(cache, found, "XRef");
            break;
        case Mentioned::encryption:
            meant = saysEncrypted(cache, found.dictionary.get());
            break;
        }
    });
    return meant || (!readable && mention.what == Mentioned::encryption);
}

/// Enters the objects of an object stream. One that stands in the file counts if it stands behind
/// the stream, one of another stream if that one does: streams come in the order of the file.
void enterMembers(DocumentCache& cache, const Mention& stream) {
    const Ref<ReferenceNode> itself = findReference(*cache.references, stream.number, 0);
    if (!itself || itself->place() != ObjectPlace::atOffset(stream.offset)) {
        return; // a newer object has its number
    }
    HeldObjectStream held;
    if (!attempted([&] { held = cache.objectStreams.find(cache, stream.number); })) {
        return;
    }
    for (std::size_t index = 0; index < held->members().size(); ++index) {
        const std::int32_t number = held->members()[index].number;
        if (number < 1 || number > budget::objectNumber || number == stream.number) {
            continue;
        }
        usedIdentity(number);
        const ObjectPlace place =
            ObjectPlace::inStream(stream.number, static_cast<std::int32_t>(index));
        nodeReference(*cache.references, number, 0, place);
        const Ref<ReferenceNode> node = findReference(*cache.references, number, 0);
        if (node->place().isInStream() || node->place().offset() < stream.offset) {
            node->move(place);
            forgetObject(cache, number, 0);
        }
    }
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

/// What dictionaries were found to be, in the order of the file.
struct Weighed {
    /// Those that may be trailers, those of cross-reference streams among them.
    std::vector<std::int32_t> trailers;
    std::vector<Mention> objectStreams;
    bool isEncrypted = false;
};

Weighed weighMentions(DocumentCache& cache, const SearchResult& result) {
    Weighed weighed;
    weighed.trailers = result.trailers;
    for (const Mention& mention : result.mentions) {
        if (!isMeant(cache, mention)) {
            continue;
        }
        switch (mention.what) {
        case Mentioned::encryption:
            weighed.isEncrypted = true;
            break;
        case Mentioned::sectionStream:
            weighed.trailers.push_back(mention.head);
            break;
        case Mentioned::objectStream:
            weighed.objectStreams.push_back(mention);
            break;
        }
    }
    std::ranges::sort(weighed.trailers);
    return weighed;
}

/// The dictionary there; an empty object where it is none or cannot be read.
ObjectOwner trailerAt(DocumentCache& cache, std::int32_t offset) {
    FoundDictionary found;
    attempted([&] { found = dictionaryAt(cache, offset); });
    return std::move(found.dictionary);
}

/// Opens the encryption that the newest trailer with any names: it speaks for the file, whichever
/// trailer leads to the catalog. Refuses encryption that no trailer explains.
void openFoundEncryption(DocumentCache& cache, const Weighed& weighed) {
    for (auto at = weighed.trailers.rbegin(); at != weighed.trailers.rend(); ++at) {
        ObjectOwner trailer = trailerAt(cache, *at);
        if (typeObject(trailer.get()) == ObjectType::dictionary &&
            saysEncrypted(cache, trailer.get())) {
            cache.trailer = std::move(trailer);
            openEncryption(cache);
            cache.trailer = ObjectOwner();
            return;
        }
    }
    if (weighed.isEncrypted) {
        failException(Exception::crossReference);
    }
}

/// The newest trailer that can be read; an empty one where there is none.
void takeNewestTrailer(DocumentCache& cache, const Weighed& weighed) {
    for (auto at = weighed.trailers.rbegin(); at != weighed.trailers.rend(); ++at) {
        cache.trailer = trailerAt(cache, *at);
        if (typeObject(cache.trailer.get()) == ObjectType::dictionary) {
            return;
        }
    }
    pushMark(Mark::dictionary);
    dictionaryOperator(cache);
    cache.trailer = ObjectOwner(popStack());
}

} // namespace

void repairCache(DocumentCache& cache) {
    raiseWarning(Warning::repaired);
    cache.repaired = true;
    cache.mends.note(Mend::crossReference);
    const Weighed weighed = weighMentions(cache, searchFile(cache, *cache.references));
    openFoundEncryption(cache, weighed);
    for (const Mention& stream : weighed.objectStreams) {
        enterMembers(cache, stream);
    }
    bool found = false;
    for (auto at = weighed.trailers.rbegin(); at != weighed.trailers.rend() && !found; ++at) {
        found = takeTrailer(cache, trailerAt(cache, *at));
    }
    if (!found) {
        cache.mends.note(Mend::trailer);
        if (!searchCatalog(cache)) {
            takeNewestTrailer(cache, weighed); // its pages may be found all the same
        }
    }
}

} // namespace corvane
