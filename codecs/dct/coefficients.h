// The coefficients of a whole image, for frames of several scans.
#pragma once

#include "codecs/dct/frame.h"
#include "codecs/dct/samples/transform.h"
#include "runtime/memory.h"

#include <span>
#include <vector>

namespace corvane {

/// Rows of blocks are made when a scan first reaches them, so that a header alone takes no memory:
/// every block costs the data at least a bit. Their bytes are charged to the zone.
class DctCoefficients {
public:
    explicit DctCoefficients(const DctFrame& frame);

    /// The blocks of a row of a component, zero at first. Past the zone's limit: `memory`.
    std::span<DctBlock> row(std::size_t component, std::size_t y);
    /// Whether a scan reached the row.
    bool reached(std::size_t component, std::size_t y) const;

private:
    struct Plane {
        std::size_t blocksInRow = 0;
        std::vector<std::vector<DctBlock>> rows{};
    };

    std::vector<Plane> planes_;
    ZoneCharge charge_;
};

} // namespace corvane
