// From subsampled components to full rows.
//
// Factors of 2 are upsampled with a triangle filter (three quarters of the nearer sample, one
// quarter of the farther), whose rounding alternates so that nothing drifts: what readers in use
// do, smooth where replication leaves blocks of colour. All other factors replicate.
#pragma once

#include "codecs/dct/strips.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

class DctUpsampler {
public:
    explicit DctUpsampler(const DctFrame& frame);

    /// The row `y` of the image in full width, with 16 bytes or more of anything behind it; valid
    /// until the next call for the component.
    const std::uint8_t* row(const DctStrips& strips, std::size_t component, std::size_t y);

private:
    enum class Method : std::uint8_t { none, replicate, across, down, both };
    struct Plane {
        Method method = Method::none;
        std::size_t width = 0;  ///< samples of the component
        std::size_t ratio[2]{}; ///< sampling factor and largest factor, horizontally
        std::size_t ratioDown[2]{};
        std::vector<std::uint8_t> out{};
    };

    std::size_t width_;
    std::vector<Plane> planes_;
    std::vector<std::int16_t> sums_; ///< a row between its vertical and its horizontal step
};

} // namespace corvane
