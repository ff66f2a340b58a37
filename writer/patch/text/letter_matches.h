// Which letters of a text are still there after it was edited.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace corvane {

/// Bytes that are the same in both texts.
struct LetterMatch {
    std::size_t was = 0;
    std::size_t is = 0;
    std::size_t length = 0;
};

/// Ascending in both texts, at the borders of UTF-8 characters. What is the same at the ends is
/// found letter by letter, what lies between by words; where comparing those, pair by pair, would
/// take more than `work`, not. What it takes is taken from that.
std::vector<LetterMatch> matchLetters(std::string_view was, std::string_view is,
                                      std::int64_t& work);

} // namespace corvane
