#include "reader/page/page_labels.h"

#include "objects/referenced.h"
#include "reader/document/text_string.h"
#include "reader/font/characters.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// Characters of a label in front of its number: it is there for each page of its range.
constexpr std::size_t longestPrefix = 64;

/// The numerals of a label are no longer: larger numbers would be rows of M.
constexpr std::int64_t largestRoman = 9999;

/// The same letter so often at most.
constexpr std::int64_t mostLetters = 10;

constexpr int letters = 26;

std::string roman(std::int64_t value) {
    constexpr std::array<std::pair<int, std::string_view>, 13> numerals = {{{1000, "M"},
                                                                            {900, "CM"},
                                                                            {500, "D"},
                                                                            {400, "CD"},
                                                                            {100, "C"},
                                                                            {90, "XC"},
                                                                            {50, "L"},
                                                                            {40, "XL"},
                                                                            {10, "X"},
                                                                            {9, "IX"},
                                                                            {5, "V"},
                                                                            {4, "IV"},
                                                                            {1, "I"}}};
    std::string text;
    for (const auto& [weight, numeral] : numerals) {
        for (; value >= weight; value -= weight) {
            text += numeral;
        }
    }
    return text;
}

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    return text;
}

LabelStyle styleOf(const Object& name) {
    if (typeObject(name) != ObjectType::literal) {
        return LabelStyle::none;
    }
    const std::string_view word = literalObject(name);
    return word == "D"   ? LabelStyle::decimal
           : word == "R" ? LabelStyle::upperRoman
           : word == "r" ? LabelStyle::lowerRoman
           : word == "A" ? LabelStyle::upperLetters
           : word == "a" ? LabelStyle::lowerLetters
                         : LabelStyle::none;
}

} // namespace

std::string labelNumber(LabelStyle style, std::int64_t value) {
    switch (style) {
    case LabelStyle::none:
        return "";
    case LabelStyle::upperRoman:
    case LabelStyle::lowerRoman:
        if (value <= largestRoman) {
            return style == LabelStyle::upperRoman ? roman(value) : lowered(roman(value));
        }
        break;
    case LabelStyle::upperLetters:
    case LabelStyle::lowerLetters: // A to Z, AA to ZZ, AAA to ZZZ
        if (const std::int64_t count = (value - 1) / letters + 1; count <= mostLetters) {
            const char first = style == LabelStyle::upperLetters ? 'A' : 'a';
            return std::string(static_cast<std::size_t>(count),
                               static_cast<char>(first + (value - 1) % letters));
        }
        break;
    case LabelStyle::decimal:
        break;
    }
    return std::to_string(value);
}

/// Reads the tree. Each entry of Kids and of Nums that is looked at counts, those met again too.
class PageLabels::Reader {
public:
    Reader(DocumentCache& cache, std::map<std::int32_t, Range>& ranges)
        : cache_(cache), ranges_(ranges) {}

    void readTree(const Object& root) {
        wait(root);
        while (!waiting_.empty() && left_ > 0) {
            const ObjectOwner entry = std::move(waiting_.back());
            waiting_.pop_back();
            attempted([&] {
                const ObjectOwner node = resolveObject(cache_, entry.get());
                if (typeObject(node.get()) == ObjectType::dictionary) {
                    readRanges(node.get());
                    readKids(node.get());
                }
            });
        }
    }

private:
    void wait(const Object& node) {
        if (typeObject(node) == ObjectType::dictionary ||
            (typeObject(node) == ObjectType::reference &&
             met_.insert(referenced(node).number).second)) {
            waiting_.push_back(sharedObject(node));
        }
    }

    void readKids(const Object& node) {
        const ObjectOwner kids = lookupObject(cache_, node, "Kids");
        if (typeObject(kids.get()) != ObjectType::array) {
            return;
        }
        for (const Object& kid : elementsObject(kids.get())) {
            if (left_-- <= 0) {
                return;
            }
            wait(kid);
        }
    }

    void readRanges(const Object& node) {
        const ObjectOwner numbers = lookupObject(cache_, node, "Nums");
        if (typeObject(numbers.get()) != ObjectType::array) {
            return;
        }
        const std::span<const Object> pairs = elementsObject(numbers.get());
        for (std::size_t i = 0; i + 1 < pairs.size() && left_-- > 0; i += 2) {
            attempted([&] {
                const ObjectOwner first = resolveObject(cache_, pairs[i]);
                if (typeObject(first.get()) == ObjectType::integer &&
                    integerObject(first.get()) >= 0 &&
                    !ranges_.contains(integerObject(first.get()))) {
                    addRange(integerObject(first.get()), pairs[i + 1]);
                }
            });
        }
    }

    void addRange(std::int32_t first, const Object& entry) {
        const std::int32_t number = referenced(entry).number;
        if (const auto known = shared_.find(number); number != 0 && known != shared_.end()) {
            ranges_.emplace(first, known->second);
            return;
        }
        const ObjectOwner label = resolveObject(cache_, entry);
        if (typeObject(label.get()) == ObjectType::dictionary) {
            const Range range = rangeOf(label.get());
            ranges_.emplace(first, range);
            shared_.emplace(number, range);
        }
    }

    Range rangeOf(const Object& label) {
        Range range;
        range.style = styleOf(lookupObject(cache_, label, "S").get());
        const std::string prefix = documentText(lookupObject(cache_, label, "P").get());
        range.prefix = toUtf8(fromUtf8(prefix).value_or(U"").substr(0, longestPrefix));
        const ObjectOwner first = lookupObject(cache_, label, "St");
        if (typeObject(first.get()) == ObjectType::integer) {
            range.first = std::max(integerObject(first.get()), 1);
        }
        return range;
    }

    DocumentCache& cache_;
    std::map<std::int32_t, Range>& ranges_;
    std::int32_t left_ = budget::labelRanges;
    std::vector<ObjectOwner> waiting_;               ///< nodes
    std::unordered_set<std::int32_t> met_;           ///< nodes that are objects, by number
    std::unordered_map<std::int32_t, Range> shared_; ///< of labels that are objects, by number
};

PageLabels::PageLabels(DocumentCache& cache) {
    attempted([&] {
        const ObjectOwner catalog = lookupObject(cache, cache.trailer.get(), "Root");
        if (typeObject(catalog.get()) == ObjectType::dictionary) {
            Reader(cache, ranges_).readTree(findEntry(cache, catalog.get(), "PageLabels"));
        }
    });
}

std::string PageLabels::of(std::int32_t page) const {
    auto range = ranges_.upper_bound(page - 1);
    if (range == ranges_.begin()) {
        return "";
    }
    --range;
    const auto& [start, label] = *range;
    return label.prefix + labelNumber(label.style, std::int64_t{label.first} + page - 1 - start);
}

} // namespace corvane
