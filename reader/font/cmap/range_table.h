// Values of ranges of numbers: codes, CIDs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

/// Number `first` has `value`, the next one `value` + 1, and so on up to `last`; or, where
/// `isConstant`, all the same.
struct NumberRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::uint32_t value = 0;
    bool isConstant = false;

    std::uint32_t at(std::uint32_t number) const {
        return isConstant ? value : value + (number - first);
    }
};

/// Ranges may overlap: what was added later counts. Once all are there, `finish` makes them ready
/// to be looked into.
class RangeTable {
public:
    void add(const NumberRange& range) {
        if (range.first <= range.last) {
            ranges_.push_back(range);
        }
    }

    void finish();

    std::optional<std::uint32_t> find(std::uint32_t number) const {
        const auto after = std::ranges::upper_bound(ranges_, number, {}, &NumberRange::first);
        if (after == ranges_.begin() || std::prev(after)->last < number) {
            return std::nullopt;
        }
        return std::prev(after)->at(number);
    }

    const std::vector<NumberRange>& ranges() const { return ranges_; } ///< ascending
    std::size_t bytes() const { return ranges_.capacity() * sizeof(NumberRange); }

private:
    std::vector<NumberRange> ranges_;
};

} // namespace corvane
