#include "codecs/dct/coefficients.h"

namespace corvane {

DctCoefficients::DctCoefficients(const DctFrame& frame) {
    for (const DctComponent& component : frame.components) {
        planes_.push_back({.blocksInRow = component.blocksInRow});
        planes_.back().rows.resize(frame.unitsDown * component.vertical);
    }
}

std::span<DctBlock> DctCoefficients::row(std::size_t component, std::size_t y) {
    Plane& plane = planes_[component];
    std::vector<DctBlock>& row = plane.rows[y];
    if (row.empty()) {
        charge_.resize(charge_.bytes() +
                       static_cast<std::int64_t>(plane.blocksInRow * sizeof(DctBlock)));
        row.resize(plane.blocksInRow);
    }
    return row;
}

bool DctCoefficients::reached(std::size_t component, std::size_t y) const {
    return !planes_[component].rows[y].empty();
}

} // namespace corvane
