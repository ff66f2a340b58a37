// Matrices of the host and of arithmetic, one as the other.
#pragma once

#include "host/matrix.h"
#include "runtime/fixed.h"

namespace corvane {

inline Matrix hostMatrix(const RealMatrix& matrix) {
    return {fixedFromReal(matrix.a), fixedFromReal(matrix.b),  fixedFromReal(matrix.c),
            fixedFromReal(matrix.d), fixedFromReal(matrix.tx), fixedFromReal(matrix.ty)};
}

inline RealMatrix realMatrix(const Matrix& matrix) {
    return {realFromFixed(matrix.a), realFromFixed(matrix.b),  realFromFixed(matrix.c),
            realFromFixed(matrix.d), realFromFixed(matrix.tx), realFromFixed(matrix.ty)};
}

} // namespace corvane
