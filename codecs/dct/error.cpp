#include "codecs/dct/error.h"

#include "runtime/exception.h"

namespace corvane {

void dct_error() {
    failException(Exception::codec);
}

void DCTDTruncateError() {
    dct_error();
}

void DCTDNoMarker() {
    dct_error();
}

void DCTDBadHuff() {
    dct_error();
}

} // namespace corvane
