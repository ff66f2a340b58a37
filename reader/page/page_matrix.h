// How a page lies on the artboard: turned as its Rotate says and, in the extended profile, moved so
// that the turned media box's lower left is 0,0.
#pragma once

#include "host/matrix.h"
#include "reader/document/cache.h"

namespace corvane {

struct Interpreter;

struct PageMatrix {
    Matrix fixed; ///< of the original profile: turned about the centre of the crop box, not moved
    RealMatrix exact; ///< of the extended profile
};

PageMatrix pageMatrix(DocumentCache& cache);
/// Of a page of these boxes that is turned by its Rotate.
PageMatrix pageMatrix(const Box& mediaBox, const Box& cropBox, std::int32_t degrees);

/// Makes it the CTM.
void applyPageMatrix(Interpreter& interpreter, const PageMatrix& matrix);

/// The box that the corners of `box` span on the artboard.
Box turnedBox(const PageMatrix& matrix, const Box& box);

/// A box of the artboard, and its size, as the host is told them.
Rect hostRect(const Box& box);
ArtboardSize hostSize(const Box& box);

} // namespace corvane
