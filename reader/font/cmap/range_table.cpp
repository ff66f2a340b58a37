#include "reader/font/cmap/range_table.h"

#include <queue>

namespace corvane {

namespace {

/// What of `range` begins at `from` and ends at `to`.
NumberRange pieceOf(const NumberRange& range, std::uint32_t from, std::uint32_t to) {
    return {.first = from, .last = to, .value = range.at(from), .isConstant = range.isConstant};
}

bool isDisjoint(const std::vector<NumberRange>& ranges) {
    return std::ranges::adjacent_find(ranges, [](const NumberRange& a, const NumberRange& b) {
               return a.last >= b.first;
           }) == ranges.end();
}

} // namespace

/// Goes through the numbers once, with all ranges that are open at a number in a heap, the one
/// added last on top.
void RangeTable::finish() {
    if (isDisjoint(ranges_)) {
        return;
    }
    std::vector<std::uint32_t> order(ranges_.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::ranges::stable_sort(order, {}, [&](std::uint32_t i) { return ranges_[i].first; });

    std::vector<NumberRange> pieces;
    std::priority_queue<std::uint32_t> open;
    std::uint64_t at = 0;
    std::size_t next = 0;
    while (next < order.size() || !open.empty()) {
        if (open.empty()) {
            at = std::max<std::uint64_t>(at, ranges_[order[next]].first);
        }
        while (next < order.size() && ranges_[order[next]].first <= at) {
            open.push(order[next++]);
        }
        const NumberRange& top = ranges_[open.top()];
        if (top.last < at) {
            open.pop();
            continue;
        }
        std::uint64_t end = top.last;
        if (next < order.size()) {
            end = std::min<std::uint64_t>(end, std::uint64_t{ranges_[order[next]].first} - 1);
        }
        pieces.push_back(
            pieceOf(top, static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end)));
        at = end + 1;
    }
    ranges_ = std::move(pieces);
}

} // namespace corvane
