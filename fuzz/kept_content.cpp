#include "fuzz/kept_content.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::fuzz {

namespace {

/// Operators that make, clip to and paint paths, and those that show text, objects and shadings.
bool isOfArt(std::string_view word) {
    constexpr std::array<std::string_view, 27> words = {
        "m", "l",  "c", "v",  "y", "h", "re", "W",  "W*", "b", "b*", "B",  "B*", "E",
        "f", "f*", "F", "F*", "n", "s", "S",  "Tj", "TJ", "'", "\"", "Do", "sh"};
    return std::ranges::find(words, word) != words.end();
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

/// Operands at the end of the content may become those of what comes behind it.
bool isSame(const PageOperation& old, const PageOperation& is) {
    return old.word.empty() ? is.operands.starts_with(old.operands)
                            : is.word == old.word && is.operands.ends_with(old.operands);
}

void requireSomewhere(const std::vector<PageOperation>& old, const std::vector<PageOperation>& is,
                      const std::vector<bool>& mayGo) {
    std::map<std::pair<std::string_view, std::string_view>, std::int64_t> counts;
    for (const PageOperation& each : is) {
        ++counts[{each.operands, each.word}];
    }
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (!mayGo[i] && !old[i].word.empty()) {
            require(--counts[{old[i].operands, old[i].word}] >= 0);
        }
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
