// The filters of PNG (PNG 1.2, chapter 6), chosen row by row.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace corvane {

/// Of Sub and Up each row gets the one that leaves the smaller differences, each without its sign.
/// Trying the other filters costs more than what they save.
class PngFilter {
public:
    /// `pixelBytes` is at least 1.
    PngFilter(std::size_t rowBytes, std::size_t pixelBytes);

    /// The number of the filter, and the row of `rowBytes` after it. Good until the next row.
    std::span<const unsigned char> filtered(std::span<const unsigned char> row);

private:
    std::size_t pixelBytes_;
    std::vector<unsigned char> before_; ///< the row before, zeros at first
    std::vector<unsigned char> filtered_;
};

} // namespace corvane
