// Pages as people list them: "1-3,7,12-".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

struct PageRange {
    std::int32_t first = 1;
    std::int32_t last = 1; ///< 0: that of the file

    bool operator==(const PageRange&) const = default;
};

/// None where the text is no such list.
std::optional<std::vector<PageRange>> pageRanges(std::string_view text);

/// Digits alone, from 1.
std::optional<std::int32_t> wholeNumber(std::string_view text);

} // namespace corvane
