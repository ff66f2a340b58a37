#include "reader/syntax/raw_entries.h"

#include "filters/token/character.h"
#include "objects/referenced.h"
#include "reader/syntax/file_bytes.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace corvane {

namespace {

/// Entries in their order; of several with one key, the one that `findEntry` takes.
class EntryList {
public:
    void add(RawEntry entry) {
        const auto [place, isNew] = places_.try_emplace(entry.key, entries_.size());
        if (isNew) {
            entries_.push_back(std::move(entry));
        } else if (rules().lastKeyCounts) {
            entries_[place->second] = std::move(entry);
        }
    }
    std::vector<RawEntry> take() { return std::move(entries_); }

private:
    std::vector<RawEntry> entries_;
    std::unordered_map<std::string, std::size_t> places_;
};

/// Walks the tokens of a dictionary and notes where its values begin and end.
class EntryWalk {
public:
    EntryWalk(FileScope& scope, const SyntaxPlace& place)
        : tokens_(scope.tokens()), stream_(place.stream) {}

    /// Goes past "12 0 obj", if that is what comes, to the value; the two numbers of a reference
    /// where that is one.
    std::optional<std::pair<std::int32_t, std::int32_t>> begin() {
        next();
        for (bool behindHead = false; type_ == TokenType::integer; behindHead = true) {
            const std::int32_t number = tokens_.number().integer;
            next();
            const std::int32_t generation = tokens_.number().integer;
            const bool isPair = type_ == TokenType::integer;
            next();
            if (!isPair || type_ != TokenType::keyword) {
                break;
            }
            if (tokens_.bytes() == "R") {
                return std::pair(number, generation);
            }
            if (behindHead || tokens_.bytes() != "obj") {
                break;
            }
            next();
        }
        return std::nullopt;
    }

    /// Goes past a section of the cross-reference to the dictionary behind it.
    void passSection() {
        do {
            next();
        } while (!atDictionary());
    }

    bool atDictionary() const { return type_ == TokenType::dictionaryOpen; }

    std::vector<RawEntry> entries(ObjectIdentifier object) {
        EntryList found;
        next();
        while (type_ != TokenType::dictionaryClose) {
            if (type_ != TokenType::literal) {
                failException(Exception::structure);
            }
            RawEntry entry{std::string(tokens_.bytes()), tokens_.mark(), 0, stream_,
                           stream_ == 0 ? object : ObjectIdentifier()};
            entry.end = passValue();
            found.add(std::move(entry));
        }
        return found.take();
    }

private:
    void next() {
        type_ = tokens_.readToken();
        if (type_ == TokenType::end) {
            failException(Exception::structure);
        }
    }

    /// Goes past one value, to the token behind it; where the value ends.
    std::int32_t passValue() {
        next();
        if (type_ == TokenType::integer) {
            return passNumbers();
        }
        std::int32_t depth = 0;
        do {
            depth += nesting();
            if (depth < 0 || depth > budget::objectNesting) {
                failException(Exception::structure);
            }
            if (depth > 0) {
                next();
            }
        } while (depth > 0);
        const std::int32_t end = tokens_.mark();
        next();
        return end;
    }

    /// An integer may be the first word of a reference.
    std::int32_t passNumbers() {
        std::int32_t end = 0;
        do {
            end = tokens_.mark();
            next();
        } while (type_ == TokenType::integer || type_ == TokenType::keyword);
        return end;
    }

    std::int32_t nesting() const {
        switch (type_) {
        case TokenType::hexOpen:
        case TokenType::arrayOpen:
        case TokenType::procedureOpen:
        case TokenType::dictionaryOpen:
            return 1;
        case TokenType::hexClose:
        case TokenType::arrayClose:
        case TokenType::procedureClose:
        case TokenType::dictionaryClose:
            return -1;
        default:
            return 0;
        }
    }

    TokenFilter& tokens_;
    std::int32_t stream_;
    TokenType type_ = TokenType::end;
};

/// Entries of the dictionary at `place`, in `object`, or at the end of the references that begin
/// there.
std::optional<std::vector<RawEntry>> entriesAt(DocumentCache& cache, SyntaxPlace place,
                                               ObjectIdentifier object) {
    for (std::int32_t depth = 0; depth < budget::referenceDepth; ++depth) {
        FileScope scope(cache, place);
        EntryWalk walk(scope, place);
        const auto reference = walk.begin();
        if (walk.atDictionary()) {
            if (cache.mends.objects(Mend::syntax).contains(object.number)) {
                return std::nullopt; // its bytes would carry the damage on
            }
            return walk.entries(object);
        }
        const Ref<ReferenceNode> node =
            reference ? findReference(*cache.references, reference->first, reference->second)
                      : Ref<ReferenceNode>();
        if (!node) {
            return std::nullopt;
        }
        place = placeOfObject(cache, node->number, node->place());
        object = {reference->first, reference->second};
    }
    return std::nullopt;
}

/// Entries of the dictionary that the object is.
std::optional<std::vector<RawEntry>> entriesOf(DocumentCache& cache, ObjectIdentifier object) {
    const Ref<ReferenceNode> node =
        findReference(*cache.references, object.number, object.generation);
    return node ? entriesAt(cache, placeOfObject(cache, object.number, node->place()), object)
                : std::nullopt;
}

} // namespace

std::vector<RawEntry> rawEntries(DocumentCache& cache, std::int32_t number,
                                 std::int32_t generation) {
    auto entries = entriesOf(cache, {number, generation});
    if (!entries) {
        failException(Exception::structure);
    }
    return std::move(*entries);
}

std::vector<RawEntry> readEntries(const Object& dictionary, ObjectIdentifier object) {
    const std::span<const Object> pairs = elementsObject(dictionary);
    EntryList entries;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        entries.add({.key = std::string(literalObject(pairs[i])),
                     .object = object,
                     .read = std::make_shared<const ObjectOwner>(sharedObject(pairs[i + 1]))});
    }
    std::vector<RawEntry> all = entries.take();
    std::erase_if(all, [](const RawEntry& entry) {
        return typeObject(entry.read->get()) == ObjectType::null;
    });
    return all;
}

std::vector<RawEntry> soundEntries(DocumentCache& cache, ObjectIdentifier object) {
    if (!cache.mends.objects(Mend::syntax).contains(object.number)) {
        return rawEntries(cache, object.number, object.generation);
    }
    ObjectOwner reference;
    indirectObject(reference.get(), object.number, object.generation);
    const ObjectOwner value = resolveObject(cache, reference.get());
    if (typeObject(value.get()) != ObjectType::dictionary) {
        failException(Exception::structure);
    }
    return readEntries(value.get(), object);
}

std::vector<RawEntry> rawEntries(DocumentCache& cache, const RawEntry& value) {
    if (value.read) {
        const Object& read = value.read->get();
        return typeObject(read) == ObjectType::dictionary ? readEntries(read, value.object)
               : typeObject(read) == ObjectType::reference
                   ? entriesOf(cache, referenced(read)).value_or(std::vector<RawEntry>())
                   : std::vector<RawEntry>();
    }
    const std::int32_t shift = value.stream == 0 ? cache.headerOffset : 0;
    return entriesAt(cache, {.stream = value.stream, .start = value.start - shift}, value.object)
        .value_or(std::vector<RawEntry>());
}

std::vector<RawEntry> rawTrailer(DocumentCache& cache) {
    if (cache.sectionOffsets.empty()) {
        failException(Exception::structure); // the file was searched
    }
    const SyntaxPlace place{.start = cache.sectionOffsets.front()};
    FileScope scope(cache, place);
    EntryWalk walk(scope, place);
    if (cache.continuesStream) {
        walk.begin();
    } else {
        walk.passSection();
    }
    return walk.entries({});
}

std::string rawValue(DocumentCache& cache, const RawEntry& entry) {
    if (entry.end - entry.start > budget::keptEntryBytes) {
        failException(Exception::limit);
    }
    const std::int64_t length = std::int64_t{entry.end} - entry.start;
    std::string bytes;
    if (entry.stream == 0) {
        bytes = bytesOfFile(cache, entry.start, length);
    } else {
        const HeldObjectStream stream = cache.objectStreams.find(cache, entry.stream);
        bytes = stream->bytes().substr(static_cast<std::size_t>(entry.start),
                                       static_cast<std::size_t>(length));
    }
    bytes.erase(bytes.begin(), std::ranges::find_if_not(bytes, isSpace));
    return bytes;
}

} // namespace corvane
