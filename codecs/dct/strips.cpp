#include "codecs/dct/strips.h"

#include <algorithm>

namespace corvane {

namespace {

/// Bytes behind a row that vectors may read.
constexpr std::size_t slack = 32;

} // namespace

DctStrips::DctStrips(const DctFrame& frame) {
    std::size_t bytes = 0;
    for (const DctComponent& component : frame.components) {
        Plane plane{.stride = 8 * component.blocksInRow + slack,
                    .rows = std::size_t{2} * 8 * component.vertical,
                    .height = component.height};
        bytes += plane.stride * plane.rows;
        charge_.resize(static_cast<std::int64_t>(bytes));
        plane.samples.resize(plane.stride * plane.rows);
        planes_.push_back(std::move(plane));
    }
}

void DctStrips::finishUnitRow(std::size_t unitRow) {
    for (Plane& plane : planes_) {
        plane.ready = std::min(plane.height, (unitRow + 1) * plane.rows / 2);
    }
}

const std::uint8_t* DctStrips::row(std::size_t component, std::size_t y) const {
    const Plane& plane = planes_[component];
    return plane.samples.data() + std::min(y, plane.ready - 1) % plane.rows * plane.stride;
}

} // namespace corvane
