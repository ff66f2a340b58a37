#include "reader/page/page_matrix.h"

#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// The turn alone, clockwise, of a multiple of 90 degrees: exact.
RealMatrix rightAngle(std::int32_t degrees) {
    switch (degrees) {
    case 90:
        return {.a = 0, .b = -1, .c = 1, .d = 0};
    case 180:
        return {.a = -1, .b = 0, .c = 0, .d = -1};
    case 270:
        return {.a = 0, .b = 1, .c = -1, .d = 0};
    default:
        return {};
    }
}

/// The box spanned by two opposite corners of `box` after `transform`.
template <class Transform>
Box spanned(const Box& box, Transform transform) {
    const RealPoint p = transform(RealPoint{box.left, box.bottom});
    const RealPoint q = transform(RealPoint{box.right, box.top});
    return {std::min(p.x, q.x), std::min(p.y, q.y), std::max(p.x, q.x), std::max(p.y, q.y)};
}

/// Half of the sum of two coordinates, rounded toward zero.
Fixed middle(double a, double b) {
    return static_cast<Fixed>((std::int64_t{fixedFromReal(a)} + fixedFromReal(b)) / 2);
}

Matrix turnedAboutCentre(const Box& crop, std::int32_t degrees) {
    const Fixed x = middle(crop.left, crop.right);
    const Fixed y = middle(crop.bottom, crop.top);
    Matrix matrix;
    callHost(slot::setIdentityMatrix, &matrix);
    callHost(slot::translateMatrix, &matrix, negateFixed(x), negateFixed(y));
    callHost(slot::rotateMatrix, &matrix, callHost(slot::degreesToAngle, long2fixed(-degrees)));
    callHost(slot::translateMatrix, &matrix, x, y);
    return matrix;
}

} // namespace

PageMatrix pageMatrix(DocumentCache& cache) {
    return pageMatrix(mediaCache(cache), cropCache(cache), rotateCache(cache));
}

PageMatrix pageMatrix(const Box& mediaBox, const Box& cropBox, std::int32_t degrees) {
    PageMatrix matrix;
    if (!rules().pageAtOrigin) {
        matrix.fixed = turnedAboutCentre(cropBox, degrees);
        return matrix;
    }
    matrix.exact = rightAngle(degrees);
    const Box media = turnedBox(matrix, mediaBox);
    matrix.exact.tx = -media.left;
    matrix.exact.ty = -media.bottom;
    return matrix;
}

void applyPageMatrix(Interpreter& interpreter, const PageMatrix& matrix) {
    if (rules().pageAtOrigin) {
        interpreter.state.exactCtm = matrix.exact;
        return;
    }
    pushMatrix(matrix.fixed);
    concatState(interpreter);
}

Box turnedBox(const PageMatrix& matrix, const Box& box) {
    if (rules().pageAtOrigin) {
        return spanned(box, [&](RealPoint p) { return transform(matrix.exact, p); });
    }
    return spanned(box, [&](RealPoint p) {
        const Point from{fixedFromReal(p.x), fixedFromReal(p.y)};
        Point to;
        callHost(slot::transformPoint, &matrix.fixed, &from, &to);
        return RealPoint{realFromFixed(to.x), realFromFixed(to.y)};
    });
}

Rect hostRect(const Box& box) {
    return {fixedFromReal(box.left), fixedFromReal(box.top), fixedFromReal(box.right),
            fixedFromReal(box.bottom)};
}

ArtboardSize hostSize(const Box& box) {
    return {fixedFromReal(box.right - box.left), fixedFromReal(box.top - box.bottom)};
}

} // namespace corvane
