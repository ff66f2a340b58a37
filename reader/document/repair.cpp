#include "reader/document/repair.h"

#include "filters/character.h"
#include "objects/identity.h"
#include "objects/stack.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/syntax.h"
#include "reader/syntax/token_push.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// Bytes searched at a time, and bytes before a word in which its numbers must stand.
constexpr std::size_t searchBlock = 65536;
constexpr std::size_t reachBack = 64;

/// Trailers kept while searching: the newest ones.
constexpr std::size_t keptTrailers = 64;

/// Takes an integer, and the white space behind it, off the end of `text`.
bool takeLastInteger(std::string_view& text, std::int32_t& value) {
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    std::int64_t sum = 0;
    std::int64_t power = 1;
    std::size_t digits = 0;
    while (!text.empty() && isDigit(text.back()) && digits < 10) {
        sum += (text.back() - '0') * power;
        power *= 10;
        ++digits;
        text.remove_suffix(1);
    }
    value = static_cast<std::int32_t>(std::min<std::int64_t>(sum, INT32_MAX));
    return digits > 0;
}

class Search {
public:
    explicit Search(DocumentCache& cache) : cache_(cache) {}

    void run() {
        Filter& file = *cache_.fileChain.top();
        std::vector<char> buffer(reachBack + searchBlock);
        std::size_t kept = 0;
        std::int32_t position = cache_.headerOffset;
        seekFilter(file, position);
        for (;;) {
            const std::span<char> room = std::span(buffer).subspan(kept);
            const std::size_t count = readFilter(file, std::as_writable_bytes(room));
            const std::string_view bytes(buffer.data(), kept + count);
            look(bytes, position - static_cast<std::int32_t>(kept), count == 0);
            if (count == 0) {
                return;
            }
            position += static_cast<std::int32_t>(count);
            kept = std::min(reachBack, bytes.size());
            std::ranges::copy(bytes.substr(bytes.size() - kept), buffer.begin());
        }
    }

    const std::vector<std::int32_t>& trailers() const { return trailers_; }

private:
    /// Looks for words that end in `bytes` but not in its last few bytes, which come again.
    void look(std::string_view bytes, std::int32_t position, bool last) {
        constexpr std::string_view object = "obj";
        constexpr std::string_view trailer = "trailer";
        const std::size_t end =
            last ? bytes.size() : bytes.size() - std::min(bytes.size(), reachBack / 4);
        for (std::size_t at = bytes.find(object); at < end; at = bytes.find(object, at + 1)) {
            noteObject(bytes.substr(0, at), position);
        }
        for (std::size_t at = bytes.find(trailer); at < end; at = bytes.find(trailer, at + 1)) {
            noteTrailer(position + static_cast<std::int32_t>(at + trailer.size()));
        }
        refuseName(bytes, "/Encrypt", Exception::crossReference);
        // Objects inside object streams are not found by searching; without them the page would
        // look right and be wrong.
        refuseName(bytes, "/ObjStm", Exception::structure);
    }

    /// Raises `code` where the whole name occurs; one at the very end comes again.
    static void refuseName(std::string_view bytes, std::string_view name, Exception code) {
        for (std::size_t at = bytes.find(name); at != std::string_view::npos;
             at = bytes.find(name, at + 1)) {
            const std::size_t behind = at + name.size();
            if (behind < bytes.size() && !isRegular(bytes[behind])) {
                failException(code);
            }
        }
    }

    void noteObject(std::string_view before, std::int32_t position) {
        std::int32_t generation = 0;
        std::int32_t number = 0;
        if (before.empty() || !isSpace(before.back()) || !takeLastInteger(before, generation) ||
            before.empty() || !isSpace(before.back()) || !takeLastInteger(before, number) ||
            number > budget::objectNumber) {
            return;
        }
        const std::int32_t offset =
            position + static_cast<std::int32_t>(before.size()) - cache_.headerOffset;
        usedIdentity(number);
        nodeReference(*cache_.references, number, generation, offset);
        findReference(*cache_.references, number, generation)->tag = offset;
    }

    void noteTrailer(std::int32_t position) {
        const std::int32_t offset = position - cache_.headerOffset;
        if (!trailers_.empty() && trailers_.back() >= offset) {
            return;
        }
        if (trailers_.size() == keptTrailers) {
            trailers_.erase(trailers_.begin());
        }
        trailers_.push_back(offset);
    }

    DocumentCache& cache_;
    std::vector<std::int32_t> trailers_;
};

/// The dictionary at `offset`, or an empty object where there is none.
ObjectOwner dictionaryAt(DocumentCache& cache, std::int32_t offset) {
    FileScope scope(cache, offset);
    const StackGuard guard;
    TokenPusher pusher(cache);
    const std::int32_t depth = countStack();
    do {
        const TokenType type = scope.tokens().readToken();
        if (type == TokenType::end) {
            return {};
        }
        if (type != TokenType::keyword) {
            pusher.push(type, scope.tokens());
        } else if (const Keyword* const keyword = objectKeywords().find(scope.tokens().bytes())) {
            keyword->handler(cache);
        }
    } while (countStack() != depth + 1 || typeObject(indexStack(0)) == ObjectType::mark);
    ObjectOwner dictionary(popStack());
    return typeObject(dictionary.get()) == ObjectType::dictionary ? std::move(dictionary)
                                                                  : ObjectOwner();
}

/// Runs `body`, which may find that what it looks at is damaged: false then.
template <class Body>
bool attempt(Body body) {
    const Exception code = guarded(body);
    if (code == Exception::memory || code == Exception::cancelled || code == Exception::limit) {
        againException();
    }
    resetException();
    return code == Exception::none;
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
    attempt([&] {
        good = typeObject(dictionary.get()) == ObjectType::dictionary &&
               isCatalog(cache, lookupObject(cache, dictionary.get(), "Root").get());
    });
    if (good) {
        cache.trailer = std::move(dictionary);
    }
    return good;
}

/// A trailer that names `root` as the catalog.
ObjectOwner madeTrailer(std::int32_t number, std::int32_t generation) {
    pushMark(Mark::dictionary);
    pushLiteral("Root");
    Object root;
    indirectObject(root, number, generation);
    pushStack(root);
    DocumentCache unused;
    dictionaryOperator(unused);
    return ObjectOwner(popStack());
}

bool searchCatalog(DocumentCache& cache) {
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        bool found = false;
        attempt([&] {
            Object reference;
            indirectObject(reference, node->number, node->generation);
            const ObjectOwner owner(reference);
            found = isCatalog(cache, resolveObject(cache, reference).get());
        });
        if (found) {
            cache.trailer = madeTrailer(node->number, node->generation);
            return true;
        }
        forgetObject(cache, node->number, node->generation);
    }
    return false;
}

} // namespace

void repairCache(DocumentCache& cache) {
    raiseWarning(Warning::repaired);
    cache.repaired = true;
    Search search(cache);
    search.run();
    bool found = false;
    for (auto at = search.trailers().rbegin(); at != search.trailers().rend(); ++at) {
        ObjectOwner dictionary;
        if (!attempt([&] { dictionary = dictionaryAt(cache, *at); }) ||
            typeObject(dictionary.get()) != ObjectType::dictionary) {
            continue;
        }
        // Whichever trailer leads to the catalog: one that is encrypted speaks for the file.
        refuseEncrypted(cache, dictionary.get());
        found = found || takeTrailer(cache, std::move(dictionary));
    }
    if (!found && !searchCatalog(cache)) {
        failException(Exception::structure);
    }
}

} // namespace corvane
