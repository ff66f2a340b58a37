#include "app/cli/batch/page_ranges.h"

#include <algorithm>
#include <charconv>

namespace corvane {

namespace {

std::optional<PageRange> rangeOf(std::string_view text) {
    const auto dash = text.find('-');
    const auto first = wholeNumber(text.substr(0, dash));
    if (!first) {
        return std::nullopt;
    }
    if (dash == std::string_view::npos) {
        return PageRange{*first, *first};
    }
    if (dash + 1 == text.size()) {
        return PageRange{*first, 0};
    }
    const auto last = wholeNumber(text.substr(dash + 1));
    return last && *last >= *first ? std::optional(PageRange{*first, *last}) : std::nullopt;
}

} // namespace

std::optional<std::int32_t> wholeNumber(std::string_view text) {
    std::int32_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || end != text.data() + text.size() || number < 1) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::vector<PageRange>> pageRanges(std::string_view text) {
    std::vector<PageRange> ranges;
    while (true) {
        const auto comma = std::min(text.find(','), text.size());
        const auto range = rangeOf(text.substr(0, comma));
        if (!range) {
            return std::nullopt;
        }
        ranges.push_back(*range);
        if (comma == text.size()) {
            return ranges;
        }
        text.remove_prefix(comma + 1);
    }
}

} // namespace corvane
