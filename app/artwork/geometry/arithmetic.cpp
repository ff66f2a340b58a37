#include "app/artwork/geometry/arithmetic.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace corvane::answer {

namespace {

/// A sum or product of 16.16 numbers with 32 fraction bits. A sum that does not fit into 64 bits is
/// far outside 16.16 and stays so.
using Wide = std::int64_t;

Wide add(Wide left, Wide right) {
    Wide sum = 0;
    if (__builtin_add_overflow(left, right, &sum)) {
        return left < 0 ? std::numeric_limits<Wide>::min() : std::numeric_limits<Wide>::max();
    }
    return sum;
}

Fixed rounded(Wide value) {
    return saturate(add(value, value < 0 ? 0x7FFF : 0x8000) >> 16);
}

/// x a + y b + c
Fixed combined(Fixed x, Fixed a, Fixed y, Fixed b, Fixed c) {
    return rounded(add(add(Wide{x} * a, Wide{y} * b), Wide{c} * fixedOne));
}

Matrix product(const Matrix& first, const Matrix& second) {
    return {combined(first.a, second.a, first.b, second.c, 0),
            combined(first.a, second.b, first.b, second.d, 0),
            combined(first.c, second.a, first.d, second.c, 0),
            combined(first.c, second.b, first.d, second.d, 0),
            combined(first.tx, second.a, first.ty, second.c, second.tx),
            combined(first.tx, second.b, first.ty, second.d, second.ty)};
}

struct Direction {
    Fixed cosine;
    Fixed sine;
};

Direction directionOf(Fixed angle) {
    constexpr std::uint32_t quarter = std::uint32_t{1} << 30;
    constexpr Direction right[] = {{fixedOne, 0}, {0, fixedOne}, {-fixedOne, 0}, {0, -fixedOne}};
    const auto turn = static_cast<std::uint32_t>(angle);
    if (turn % quarter == 0) {
        return right[turn / quarter];
    }
    const double radians = turn * (2 * std::numbers::pi / 4294967296.0);
    return {static_cast<Fixed>(std::lround(std::cos(radians) * fixedOne)),
            static_cast<Fixed>(std::lround(std::sin(radians) * fixedOne))};
}

HostBoolean answered(bool value) {
    return value ? HostBoolean::yes : HostBoolean::no;
}

bool isEmpty(const Rect& rect) {
    return rect.left >= rect.right || rect.bottom >= rect.top;
}

} // namespace

Fixed fixedMultiply(Fixed left, Fixed right) {
    return rounded(Wide{left} * right);
}

Fixed fixedDivide(Fixed dividend, Fixed divisor) {
    if (divisor == 0) {
        return dividend < 0 ? std::numeric_limits<Fixed>::min() : std::numeric_limits<Fixed>::max();
    }
    const Wide twice = 2 * std::abs(Wide{dividend} * fixedOne);
    const Wide size = std::abs(Wide{divisor});
    const Wide quotient = (twice + size) / (2 * size);
    return saturate((dividend < 0) == (divisor < 0) ? quotient : -quotient);
}

Fixed degreesToAngle(Fixed degrees) {
    const Wide turned = Wide{degrees} * fixedOne;
    const Wide angle = (turned + (turned < 0 ? -180 : 180)) / 360;
    return static_cast<Fixed>(static_cast<std::uint32_t>(angle));
}

HostBoolean pointsEqual(const Point* left, const Point* right) {
    return answered(*left == *right);
}

HostBoolean matricesEqual(const Matrix* left, const Matrix* right) {
    return answered(*left == *right);
}

HostBoolean rectsEqual(const Rect* left, const Rect* right) {
    return answered(*left == *right);
}

void setIdentityMatrix(Matrix* matrix) {
    *matrix = {};
}

void setMatrixTranslation(Matrix* matrix, Fixed dx, Fixed dy) {
    matrix->tx = dx;
    matrix->ty = dy;
}

void translateMatrix(Matrix* matrix, Fixed dx, Fixed dy) {
    *matrix = product(*matrix, {fixedOne, 0, 0, fixedOne, dx, dy});
}

void scaleMatrix(Matrix* matrix, Fixed sx, Fixed sy) {
    *matrix = product(*matrix, {sx, 0, 0, sy, 0, 0});
}

void rotateMatrix(Matrix* matrix, Fixed angle) {
    const Direction direction = directionOf(angle);
    *matrix = product(*matrix, {direction.cosine, direction.sine, saturate(-Wide{direction.sine}),
                                direction.cosine, 0, 0});
}

void multiplyMatrix(const Matrix* first, const Matrix* second, Matrix* result) {
    *result = product(*first, *second);
}

void transformPoint(const Matrix* matrix, const Point* point, Point* result) {
    *result = {combined(point->x, matrix->a, point->y, matrix->c, matrix->tx),
               combined(point->x, matrix->b, point->y, matrix->d, matrix->ty)};
}

void setRect(Rect* rect, Fixed left, Fixed top, Fixed right, Fixed bottom) {
    *rect = {left, top, right, bottom};
}

HostBoolean rectEmpty(const Rect* rect) {
    return answered(isEmpty(*rect));
}

void sectRect(const Rect* first, const Rect* second, Rect* result) {
    const Rect shared = {std::max(first->left, second->left), std::min(first->top, second->top),
                         std::min(first->right, second->right),
                         std::max(first->bottom, second->bottom)};
    *result = isEmpty(shared) ? Rect{} : shared;
}

} // namespace corvane::answer
