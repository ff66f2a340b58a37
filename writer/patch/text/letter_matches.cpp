#include "writer/patch/text/letter_matches.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace corvane {

namespace {

/// Words of one text times words of the other; a line has a hundred words at most.
constexpr std::size_t mostWordPairs = 1 << 16;

bool isInCharacter(std::string_view text, std::size_t place) {
    return place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0) == 0x80;
}

std::size_t sameAtStart(std::string_view a, std::string_view b) {
    auto same = static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
    while (same > 0 && (isInCharacter(a, same) || isInCharacter(b, same))) {
        --same;
    }
    return same;
}

std::size_t sameAtEnd(std::string_view a, std::string_view b) {
    const auto at = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend()).first;
    auto same = static_cast<std::size_t>(at - a.rbegin());
    while (same > 0 && isInCharacter(a, a.size() - same)) {
        --same;
    }
    return same;
}

/// Where words begin, each with the blanks behind it; and the end of the text.
std::vector<std::size_t> wordsOf(std::string_view text) {
    std::vector<std::size_t> starts = {0};
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i - 1] == ' ' && text[i] != ' ') {
            starts.push_back(i);
        }
    }
    starts.push_back(text.size());
    return starts;
}

class Matches {
public:
    void add(std::size_t was, std::size_t is, std::size_t length) {
        if (length == 0) {
            return;
        }
        if (!found_.empty() && found_.back().was + found_.back().length == was &&
            found_.back().is + found_.back().length == is) {
            found_.back().length += length;
        } else {
            found_.push_back({was, is, length});
        }
    }

    /// The longest sequence of words that both have.
    void addWords(std::string_view was, std::string_view is, std::size_t start,
                  std::int64_t& work) {
        const std::vector<std::size_t> former = wordsOf(was);
        const std::vector<std::size_t> words = wordsOf(is);
        const std::size_t rows = former.size() - 1;
        const std::size_t columns = words.size() - 1;
        // All words may be the same, and long.
        const auto letters =
            static_cast<std::int64_t>(std::min(rows * is.size(), columns * was.size()));
        if (was.empty() || is.empty() || rows * columns > mostWordPairs || letters > work) {
            return;
        }
        work -= letters;
        const auto isSame = [&](std::size_t i, std::size_t j) {
            return was.substr(former[i], former[i + 1] - former[i]) ==
                   is.substr(words[j], words[j + 1] - words[j]);
        };
        // How many words are the same from each pair of places on.
        std::vector<std::uint32_t> counts((rows + 1) * (columns + 1));
        const auto countAt = [&](std::size_t i, std::size_t j) -> std::uint32_t& {
            return counts[i * (columns + 1) + j];
        };
        for (std::size_t i = rows; i-- > 0;) {
            for (std::size_t j = columns; j-- > 0;) {
                countAt(i, j) = isSame(i, j) ? countAt(i + 1, j + 1) + 1
                                             : std::max(countAt(i + 1, j), countAt(i, j + 1));
            }
        }
        for (std::size_t i = 0, j = 0; i < rows && j < columns;) {
            if (isSame(i, j)) {
                add(start + former[i], start + words[j], former[i + 1] - former[i]);
                ++i;
                ++j;
            } else if (countAt(i + 1, j) >= countAt(i, j + 1)) {
                ++i;
            } else {
                ++j;
            }
        }
    }

    std::vector<LetterMatch> take() { return std::move(found_); }

private:
    std::vector<LetterMatch> found_;
};

} // namespace

std::vector<LetterMatch> matchLetters(std::string_view was, std::string_view is,
                                      std::int64_t& work) {
    const std::size_t start = sameAtStart(was, is);
    was.remove_prefix(start);
    is.remove_prefix(start);
    const std::size_t end = sameAtEnd(was, is);
    was.remove_suffix(end);
    is.remove_suffix(end);
    Matches matches;
    matches.add(0, 0, start);
    matches.addWords(was, is, start, work);
    matches.add(start + was.size(), start + is.size(), end);
    return matches.take();
}

} // namespace corvane
