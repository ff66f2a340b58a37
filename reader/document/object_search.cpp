#include "reader/document/object_search.h"

#include "filters/token/character.h"
#include "objects/identity.h"
#include "runtime/budget.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Bytes searched at a time, and bytes before a word in which its numbers must stand.
constexpr std::size_t searchBlock = 65536;
constexpr std::size_t reachBack = 64;

/// Bytes at the end of a block in which a word may be cut; they are searched with the next.
constexpr std::size_t cutReach = 16;

/// Trailers kept while searching: the newest ones.
constexpr std::size_t keptTrailers = 64;

enum Word : std::uint8_t { objectWord, trailerWord, objectStreamName, sectionName, encryptName };
constexpr std::array<std::string_view, 5> words = {"obj", "trailer", "/ObjStm", "/XRef",
                                                   "/Encrypt"};

Mentioned mentionedBy(Word name) {
    return name == objectStreamName ? Mentioned::objectStream
           : name == sectionName    ? Mentioned::sectionStream
                                    : Mentioned::encryption;
}

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
    Search(DocumentCache& cache, ReferenceTable& references)
        : cache_(cache), references_(references) {}

    SearchResult run() {
        Filter& file = *cache_.fileChain.top();
        std::vector<char> buffer(reachBack + searchBlock);
        std::size_t kept = 0;
        std::int32_t position = cache_.headerOffset;
        looked_ = position;
        seekFilter(file, position);
        for (;;) {
            const std::span<char> room = std::span(buffer).subspan(kept);
            const std::size_t count = readFilter(file, std::as_writable_bytes(room));
            const std::string_view bytes(buffer.data(), kept + count);
            look(bytes, position - static_cast<std::int32_t>(kept), count == 0);
            if (count == 0) {
                return std::move(result_);
            }
            position += static_cast<std::int32_t>(count);
            kept = std::min(reachBack, bytes.size());
            std::ranges::copy(bytes.substr(bytes.size() - kept), buffer.begin());
        }
    }

private:
    /// Notes the words of a block, which stands at `position`, in the order in which they come.
    void look(std::string_view bytes, std::int32_t position, bool last) {
        const std::size_t end =
            last ? bytes.size() : bytes.size() - std::min(bytes.size(), cutReach);
        std::array<std::size_t, words.size()> next{};
        for (std::size_t i = 0; i < words.size(); ++i) {
            next[i] = bytes.find(words[i], static_cast<std::size_t>(looked_ - position));
        }
        for (;;) {
            const auto nearest = std::ranges::min_element(next);
            const std::size_t at = *nearest;
            if (at >= end) {
                break;
            }
            const auto word = static_cast<std::size_t>(nearest - next.begin());
            note(static_cast<Word>(word), bytes, at, position);
            *nearest = bytes.find(words[word], at + 1);
        }
        looked_ = std::max(looked_, position + static_cast<std::int32_t>(end));
    }

    void note(Word word, std::string_view bytes, std::size_t at, std::int32_t position) {
        const std::size_t behind = at + words[word].size();
        const std::int32_t offset =
            position + static_cast<std::int32_t>(behind) - cache_.headerOffset;
        switch (word) {
        case objectWord:
            if (noteObject(bytes.substr(0, at), position)) {
                head_.head = offset;
            }
            break;
        case trailerWord:
            noteTrailer(offset);
            head_ = {.head = offset};
            break;
        case objectStreamName:
        case sectionName:
        case encryptName:
            if (head_.head > 0 && behind < bytes.size() && !isRegular(bytes[behind])) {
                noteMention(mentionedBy(word));
            }
            break;
        }
    }

    bool noteObject(std::string_view before, std::int32_t position) {
        std::int32_t generation = 0;
        std::int32_t number = 0;
        if (before.empty() || !isSpace(before.back()) || !takeLastInteger(before, generation) ||
            before.empty() || !isSpace(before.back()) || !takeLastInteger(before, number) ||
            number < 1 || number > budget::objectNumber) {
            return false; // object 0 is the head of the free ones, and no section can list it
        }
        const ObjectPlace place = ObjectPlace::atOffset(
            position + static_cast<std::int32_t>(before.size()) - cache_.headerOffset);
        usedIdentity(number);
        nodeReference(references_, number, generation, place);
        findReference(references_, number, generation)->move(place);
        head_.number = number;
        head_.offset = place.offset();
        return true;
    }

    void noteTrailer(std::int32_t offset) {
        std::vector<std::int32_t>& trailers = result_.trailers;
        if (trailers.size() == keptTrailers) {
            trailers.erase(trailers.begin());
        }
        trailers.push_back(offset);
    }

    void noteMention(Mentioned what) {
        const auto isSame = [&](const Mention& mention) {
            return mention.head == head_.head && mention.what == what;
        };
        // Those of one head are the last ones.
        const auto recent = std::min<std::ptrdiff_t>(3, std::ssize(result_.mentions));
        if (std::none_of(result_.mentions.end() - recent, result_.mentions.end(), isSame)) {
            result_.mentions.push_back(head_);
            result_.mentions.back().what = what;
        }
    }

    DocumentCache& cache_;
    ReferenceTable& references_;
    SearchResult result_;
    std::int32_t looked_ = 0; ///< words that begin before here were noted
    Mention head_;            ///< of the last head; its offset is 0 where there was none
};

} // namespace

SearchResult searchFile(DocumentCache& cache, ReferenceTable& references) {
    return Search(cache, references).run();
}

} // namespace corvane
