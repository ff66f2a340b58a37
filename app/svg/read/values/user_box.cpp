#include "app/svg/read/values/user_box.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

/// Calls `addAt` for each parameter at which a curve of one coordinate turns around.
template <class AddAt>
void forEachTurn(double p0, double p1, double p2, double p3, AddAt addAt) {
    const double a = p3 - 3 * p2 + 3 * p1 - p0;
    const double b = 2 * (p2 - 2 * p1 + p0);
    const double c = p1 - p0;
    if (std::abs(a) < 1e-12 * (std::abs(b) + std::abs(c))) {
        if (b != 0) {
            addAt(-c / b);
        }
        return;
    }
    const double root = std::sqrt(std::max(0.0, b * b - 4 * a * c));
    addAt((-b + root) / (2 * a));
    addAt((-b - root) / (2 * a));
}

double curveAt(double p0, double p1, double p2, double p3, double t) {
    const double s = 1 - t;
    return s * s * s * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t * p3;
}

} // namespace

void UserBox::add(double x, double y) {
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
}

void UserBox::addCurve(RealPoint start, RealPoint out, RealPoint in, RealPoint end) {
    add(start.x, start.y);
    add(end.x, end.y);
    const auto addAt = [&](double t) {
        if (t > 0 && t < 1) {
            add(curveAt(start.x, out.x, in.x, end.x, t), curveAt(start.y, out.y, in.y, end.y, t));
        }
    };
    forEachTurn(start.x, out.x, in.x, end.x, addAt);
    forEachTurn(start.y, out.y, in.y, end.y, addAt);
}

void UserBox::add(const UserBox& more) {
    if (!more.empty()) {
        add(more.left, more.top);
        add(more.right, more.bottom);
    }
}

UserBox boxThrough(const RealMatrix& matrix, const UserBox& box) {
    UserBox through;
    if (box.empty()) {
        return through;
    }
    for (const double x : {box.left, box.right}) {
        for (const double y : {box.top, box.bottom}) {
            const RealPoint corner = transform(matrix, {x, y});
            through.add(corner.x, corner.y);
        }
    }
    return through;
}

} // namespace corvane
