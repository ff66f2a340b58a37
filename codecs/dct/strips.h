// The samples of the units being decoded: for each component the last two rows of units.
//
// Two are enough for upsampling, which looks one row of samples up and down: a row of units is
// overwritten only after the one that follows it has been delivered but for its last row.
#pragma once

#include "codecs/dct/frame.h"
#include "runtime/memory.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

class DctStrips {
public:
    /// Memory for the width of the frame, charged to the zone; it does not depend on the height.
    explicit DctStrips(const DctFrame& frame);

    std::size_t stride(std::size_t component) const { return planes_[component].stride; }
    /// Where the samples of a block go.
    std::uint8_t* block(std::size_t component, std::size_t x, std::size_t y) {
        return at(planes_[component], 8 * y) + 8 * x;
    }
    /// All rows of units up to here, that one included, are there to be read.
    void finishUnitRow(std::size_t unitRow);
    /// A row of samples; `y` past the last one that is there means that one.
    const std::uint8_t* row(std::size_t component, std::size_t y) const;

private:
    struct Plane {
        std::size_t stride = 0;
        std::size_t rows = 0;   ///< of the ring
        std::size_t height = 0; ///< of the component
        std::size_t ready = 0;  ///< rows decoded so far
        std::vector<std::uint8_t> samples{};
    };

    static std::uint8_t* at(Plane& plane, std::size_t y) {
        return plane.samples.data() + y % plane.rows * plane.stride;
    }

    std::vector<Plane> planes_;
    ZoneCharge charge_;
};

} // namespace corvane
