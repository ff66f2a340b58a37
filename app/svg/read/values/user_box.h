// Boxes around geometry in a user space.
#pragma once

#include "host/matrix.h"

#include <limits>

namespace corvane {

/// Around points of a user space. Starts as nothing.
struct UserBox {
    double left = std::numeric_limits<double>::infinity();
    double top = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double bottom = -std::numeric_limits<double>::infinity();

    bool empty() const { return !(left <= right && top <= bottom); }
    double width() const { return right - left; }
    double height() const { return bottom - top; }
    void add(double x, double y);
    void add(const UserBox& more);
    void addCurve(RealPoint start, RealPoint out, RealPoint in, RealPoint end);
};

/// A box of one space in another, around all of it.
UserBox boxThrough(const RealMatrix& matrix, const UserBox& box);

} // namespace corvane
