// The soft masks of a page, each drawn once for a place that it is used in.
#pragma once

#include "host/appearance.h"
#include "host/matrix.h"
#include "objects/object.h"

#include <array>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace corvane {

struct Interpreter;

class SoftMasks {
public:
    /// The mask of a soft-mask dictionary, under the CTM in force. Its group is drawn in the state
    /// that a page begins with, so that a mask does not depend on where it is set. Null where it
    /// cannot be drawn, or is being drawn.
    SoftMask find(Interpreter& interpreter, const Object& dictionary);

private:
    const std::vector<double>& transferOf(Interpreter& interpreter, const Object& dictionary);

    /// What two uses have in common that are one mask.
    using Key = std::tuple<std::int32_t, std::size_t, bool, double, std::array<double, 6>,
                           std::vector<double>>;

    std::map<Key, SoftMask> known_;
    /// What functions make of values, by the numbers of their objects; 0: the latest that has none.
    std::map<std::int32_t, std::vector<double>> transfers_;
};

} // namespace corvane
