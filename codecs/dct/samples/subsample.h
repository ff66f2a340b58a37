// From full planes to subsampled ones, before coding.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

struct DctPlaneReduction {
    const std::uint8_t* from = nullptr;
    std::size_t stride = 0; ///< bytes from row to row, of both planes
    std::size_t width = 0;  ///< samples that are wanted
    std::size_t height = 0;
    std::array<std::size_t, 2> across{1, 1}; ///< sampling factor and largest factor
    std::array<std::size_t, 2> down{1, 1};
};

/// Every sample is the mean of the samples that it stands for. Halves are rounded up and down in
/// turn, so that nothing drifts.
void dctSubsample(const DctPlaneReduction& reduction, std::uint8_t* to);

} // namespace corvane
