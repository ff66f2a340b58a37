#include "fuzz/support/kept_content.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::fuzz {

namespace {

/// Operators that make, clip to and paint paths, and those that show text, objects, shadings and
/// inline images, of which the data are a part of the word.
bool isOfArt(std::string_view word) {
    constexpr std::array<std::string_view, 29> words = {
        "m",  "l", "c",  "v", "y", "h", "re", "W",  "W*", "b",  "b*", "B",  "B*", "E", "f",
        "f*", "F", "F*", "n", "s", "S", "Tj", "TJ", "'",  "\"", "Do", "sh", "BI", "EI"};
    return std::ranges::find(words, word) != words.end() || word.starts_with("ID");
}

/// Text that is written apart is shown by TJ, whatever showed it.
bool isShow(std::string_view word) {
    return word == "Tj" || word == "TJ" || word == "'" || word == "\"";
}

/// By operator: whether its word stands within one of the sources. Both come in the order of the
/// content. Stray tokens may stand in front of an operator's operands, and of the source.
std::vector<bool> within(const std::vector<PageOperation>& operations, const SourceSet& sources) {
    std::vector<bool> inside(operations.size());
    auto source = sources.begin();
    std::int64_t reach = 0; // of the sources that began already
    for (std::size_t i = 0; i < operations.size(); ++i) {
        for (; source != sources.end() && source->first < operations[i].end; ++source) {
            reach = std::max(reach, source->second);
        }
        inside[i] = operations[i].end <= reach;
    }
    return inside;
}

/// By operator: whether it ends nothing that was begun.
std::vector<bool> surplus(const std::vector<PageOperation>& operations) {
    std::vector<bool> found(operations.size());
    std::int64_t depth = 0;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        if (operations[i].word == "q") {
            ++depth;
        } else if (operations[i].word == "Q") {
            found[i] = depth == 0;
            depth -= depth > 0 ? 1 : 0;
        }
    }
    return found;
}

bool takesNone(std::string_view word) {
    constexpr std::array<std::string_view, 6> words = {"q", "Q", "BT", "ET", "EMC", "BI"};
    return std::ranges::find(words, word) != words.end();
}

/// Whether the former operands are there. Tokens in front of those that an operator takes may have
/// become those of what is written before it, and the other way round. Operands at the end of the
/// content may become those of what comes behind it.
bool isSame(const PageOperation& old, const PageOperation& is) {
    if (old.word.empty()) {
        return is.operands.starts_with(old.operands);
    }
    const std::string_view fewer =
        old.operands.size() < is.operands.size() ? old.operands : is.operands;
    const std::string_view more =
        old.operands.size() < is.operands.size() ? is.operands : old.operands;
    return is.word == old.word && more.ends_with(fewer) &&
           (!fewer.empty() || old.operands.empty() || takesNone(old.word));
}

void requireSomewhere(const std::vector<PageOperation>& old, const std::vector<PageOperation>& is,
                      const std::vector<bool>& mayGo) {
    std::multimap<std::string_view, const PageOperation*> left; // by word
    for (const PageOperation& each : is) {
        left.emplace(each.word, &each);
    }
    const auto take = [&](const auto& isIt, std::string_view word) {
        const auto [first, end] = left.equal_range(word);
        const auto found =
            std::find_if(first, end, [&](const auto& entry) { return isIt(*entry.second); });
        const bool isThere = found != end;
        if (isThere) {
            left.erase(found);
        }
        return isThere;
    };
    std::vector<const PageOperation*> unlike;
    for (std::size_t i = 0; i < old.size(); ++i) {
        const auto isEqual = [&](const PageOperation& each) {
            return each.operands == old[i].operands;
        };
        if (!mayGo[i] && !old[i].word.empty() && !take(isEqual, old[i].word)) {
            unlike.push_back(&old[i]);
        }
    }
    for (const PageOperation* const each : unlike) {
        require(take([&](const PageOperation& other) { return isSame(*each, other); }, each->word));
    }
}

} // namespace

void requireKept(const std::vector<PageOperation>& old, const std::vector<PageOperation>& is,
                 const EditedPage& edited) {
    const std::vector<bool> touched = within(old, edited.touched);
    const std::vector<bool> sourced = within(old, edited.sources);
    std::vector<bool> mayGo = surplus(old);
    for (std::size_t i = 0; i < old.size(); ++i) {
        mayGo[i] = mayGo[i] || (touched[i] && isOfArt(old[i].word));
    }
    if (edited.hasMoved) {
        std::vector<bool> mayChange = mayGo;
        for (std::size_t i = 0; i < old.size(); ++i) {
            mayChange[i] = mayChange[i] || (sourced[i] && isShow(old[i].word));
        }
        requireSomewhere(old, is, mayChange);
    }
    auto at = is.begin();
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (mayGo[i] || (edited.hasMoved && sourced[i] && isOfArt(old[i].word))) {
            continue;
        }
        at = std::find_if(at, is.end(),
                          [&](const PageOperation& each) { return isSame(old[i], each); });
        require(at != is.end());
        at += old[i].word.empty() ? 0 : 1;
    }
}

} // namespace corvane::fuzz
