// What a document calls its pages: "iv", "A-3" (PDF Reference, 8.3.1).
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <map>
#include <string>

namespace corvane {

/// How the numbers of a range of pages are written.
enum class LabelStyle { none, decimal, upperRoman, lowerRoman, upperLetters, lowerLetters };

/// `value` is 1 or more. Numerals and letters that nobody would read are decimal.
std::string labelNumber(LabelStyle style, std::int64_t value);

class PageLabels {
public:
    /// Reads the catalog's number tree, as far as `budget::labelRanges` goes. What is damaged in
    /// it is passed over.
    explicit PageLabels(DocumentCache& cache);

    /// UTF-8; `page` from 1. Empty where the file says nothing of it.
    std::string of(std::int32_t page) const;

private:
    struct Range {
        LabelStyle style = LabelStyle::none;
        std::string prefix;
        std::int32_t first = 1; ///< the number of its first page
    };

    class Reader;

    std::map<std::int32_t, Range> ranges_; ///< by the first page, from 0
};

} // namespace corvane
