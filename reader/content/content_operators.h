// The operators of page content, by topic. Their operands were checked by the row of the keyword
// table that names them (reader/content/content_keywords.cpp). All return 0.
#pragma once

#include "reader/syntax/syntax.h"

namespace corvane {

// Graphics state (reader/content/state_operators.cpp)
OperatorResult saveOperator(DocumentCache& cache);    ///< q
OperatorResult restoreOperator(DocumentCache& cache); ///< Q
OperatorResult concatOperator(DocumentCache& cache);  ///< cm
OperatorResult widthOperator(DocumentCache& cache);   ///< w
OperatorResult capOperator(DocumentCache& cache);     ///< J: 0 to 2, otherwise `type`
OperatorResult joinOperator(DocumentCache& cache);    ///< j: 0 to 2, otherwise `type`
OperatorResult miterOperator(DocumentCache& cache);   ///< M: 1.0 or more, otherwise `type`
OperatorResult dashOperator(DocumentCache& cache);    ///< d: up to six lengths, otherwise `type`
OperatorResult flatOperator(DocumentCache& cache);    ///< i

// Path construction (reader/paint/path_operators.cpp)
OperatorResult moveToOperator(DocumentCache& cache);     ///< m
OperatorResult lineToOperator(DocumentCache& cache);     ///< l
OperatorResult curveTo123Operator(DocumentCache& cache); ///< c
OperatorResult curveTo23Operator(DocumentCache& cache);  ///< v
OperatorResult curveTo13Operator(DocumentCache& cache);  ///< y
OperatorResult rectangleOperator(DocumentCache& cache);  ///< re
OperatorResult closeOperator(DocumentCache& cache);      ///< h

// Painting and clipping (reader/paint/path_operators.cpp)
OperatorResult closeFillStrokePathOperator(DocumentCache& cache);   ///< b
OperatorResult fillStrokePathOperator(DocumentCache& cache);        ///< B
OperatorResult closeEofillStrokePathOperator(DocumentCache& cache); ///< b*
OperatorResult eofillStrokePathOperator(DocumentCache& cache);      ///< B*
OperatorResult closeFillPathOperator(DocumentCache& cache);         ///< f
OperatorResult fillPathOperator(DocumentCache& cache);              ///< F
OperatorResult closeEofillPathOperator(DocumentCache& cache);       ///< f*
OperatorResult eofillPathOperator(DocumentCache& cache);            ///< F*
OperatorResult resetPathOperator(DocumentCache& cache);             ///< n, E
OperatorResult closeStrokePathOperator(DocumentCache& cache);       ///< s
OperatorResult strokePathOperator(DocumentCache& cache);            ///< S
OperatorResult clipPathOperator(DocumentCache& cache);              ///< W
OperatorResult eoclipPathOperator(DocumentCache& cache);            ///< W*

// Colour (reader/paint/colour_operators.cpp)
OperatorResult grayFillOperator(DocumentCache& cache);   ///< g
OperatorResult grayStrokeOperator(DocumentCache& cache); ///< G
OperatorResult rgbFillOperator(DocumentCache& cache);    ///< rg
OperatorResult rgbStrokeOperator(DocumentCache& cache);  ///< RG
OperatorResult cmykFillOperator(DocumentCache& cache);   ///< k
OperatorResult cmykStrokeOperator(DocumentCache& cache); ///< K

// What is left out so far (reader/content/omitted_operators.cpp)
OperatorResult omittedTextOperator(DocumentCache& cache); ///< operators that show text
OperatorResult passedTextOperator(DocumentCache& cache);  ///< operators that only set text up
OperatorResult beginImageOperator(DocumentCache& cache);  ///< BI
OperatorResult dataImageOperator(DocumentCache& cache);   ///< ID
OperatorResult endImageOperator(DocumentCache& cache);    ///< EI
OperatorResult doObjectOperator(DocumentCache& cache);    ///< Do
OperatorResult charWidthOperator(DocumentCache& cache);   ///< d0
OperatorResult cacheDeviceOperator(DocumentCache& cache); ///< d1

// Further ones of the extended profile (reader/content/extended_operators.cpp)
OperatorResult shadingOperator(DocumentCache& cache);       ///< sh
OperatorResult fillSpaceOperator(DocumentCache& cache);     ///< cs
OperatorResult strokeSpaceOperator(DocumentCache& cache);   ///< CS
OperatorResult fillColourOperator(DocumentCache& cache);    ///< sc, scn
OperatorResult strokeColourOperator(DocumentCache& cache);  ///< SC, SCN
OperatorResult externalStateOperator(DocumentCache& cache); ///< gs: line parameters
OperatorResult
invisibleOperator(DocumentCache& cache); ///< marked content, compatibility: nothing to draw

} // namespace corvane
