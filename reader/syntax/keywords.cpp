#include "reader/syntax/keywords.h"

#include <array>

namespace corvane {

namespace {

constexpr std::array crossReferenceRows = {
    Keyword{"null", nullOperator},       Keyword{"true", trueOperator},
    Keyword{"false", falseOperator},     Keyword{"R", referenceOperator},
    Keyword{"xref", xrefOperator},       Keyword{"startxref", startxrefOperator},
    Keyword{"f", freeOperator},          Keyword{"n", nodeOperator},
    Keyword{"trailer", trailerOperator},
};

constexpr std::array objectRows = {
    Keyword{"null", nullOperator},     Keyword{"true", trueOperator},
    Keyword{"false", falseOperator},   Keyword{"R", referenceOperator},
    Keyword{"obj", objOperator},       Keyword{"endobj", endobjOperator},
    Keyword{"stream", streamOperator}, Keyword{"endstream", endstreamOperator},
};

} // namespace

SyntaxKeywords::SyntaxKeywords() : crossReference(crossReferenceRows), object(objectRows) {}

} // namespace corvane
