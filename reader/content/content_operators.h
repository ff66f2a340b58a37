// The operators of page content, by topic. Their operands were checked by the row of the keyword
// table that names them (reader/content/content_keywords.cpp).
#pragma once

#include "reader/content/interpreter.h"

namespace corvane {

// Words that stand for operands
void nullOperand(Interpreter& interpreter);
void trueOperand(Interpreter& interpreter);
void falseOperand(Interpreter& interpreter);

// Graphics state (reader/content/state_operators.cpp)
void saveOperator(Interpreter& interpreter);    ///< q
void restoreOperator(Interpreter& interpreter); ///< Q
void concatOperator(Interpreter& interpreter);  ///< cm
void widthOperator(Interpreter& interpreter);   ///< w
void capOperator(Interpreter& interpreter);     ///< J: 0 to 2, otherwise `type`
void joinOperator(Interpreter& interpreter);    ///< j: 0 to 2, otherwise `type`
void miterOperator(Interpreter& interpreter);   ///< M: 1.0 or more, otherwise `type`
void dashOperator(Interpreter& interpreter);    ///< d: up to six lengths, otherwise `type`
void flatOperator(Interpreter& interpreter);    ///< i

// Path construction (reader/paint/path_operators.cpp)
void moveToOperator(Interpreter& interpreter);     ///< m
void lineToOperator(Interpreter& interpreter);     ///< l
void curveTo123Operator(Interpreter& interpreter); ///< c
void curveTo23Operator(Interpreter& interpreter);  ///< v
void curveTo13Operator(Interpreter& interpreter);  ///< y
void rectangleOperator(Interpreter& interpreter);  ///< re
void closeOperator(Interpreter& interpreter);      ///< h

// Painting and clipping (reader/paint/path_operators.cpp)
void closeFillStrokePathOperator(Interpreter& interpreter);   ///< b
void fillStrokePathOperator(Interpreter& interpreter);        ///< B
void closeEofillStrokePathOperator(Interpreter& interpreter); ///< b*
void eofillStrokePathOperator(Interpreter& interpreter);      ///< B*
void closeFillPathOperator(Interpreter& interpreter);         ///< f
void fillPathOperator(Interpreter& interpreter);              ///< F
void closeEofillPathOperator(Interpreter& interpreter);       ///< f*
void eofillPathOperator(Interpreter& interpreter);            ///< F*
void resetPathOperator(Interpreter& interpreter);             ///< n, E
void closeStrokePathOperator(Interpreter& interpreter);       ///< s
void strokePathOperator(Interpreter& interpreter);            ///< S
void clipPathOperator(Interpreter& interpreter);              ///< W
void eoclipPathOperator(Interpreter& interpreter);            ///< W*

// Colour (reader/paint/colour_operators.cpp)
void grayFillOperator(Interpreter& interpreter);   ///< g
void grayStrokeOperator(Interpreter& interpreter); ///< G
void rgbFillOperator(Interpreter& interpreter);    ///< rg
void rgbStrokeOperator(Interpreter& interpreter);  ///< RG
void cmykFillOperator(Interpreter& interpreter);   ///< k
void cmykStrokeOperator(Interpreter& interpreter); ///< K

// Text (reader/text/text_operators.cpp; of the original profile: reader/classic/line_operators.h)
void beginTextOperator(Interpreter& interpreter);                ///< BT
void endTextOperator(Interpreter& interpreter);                  ///< ET
void charSpaceOperator(Interpreter& interpreter);                ///< Tc
void wordSpaceOperator(Interpreter& interpreter);                ///< Tw
void scaleOperator(Interpreter& interpreter);                    ///< Tz
void leadingOperator(Interpreter& interpreter);                  ///< TL
void riseOperator(Interpreter& interpreter);                     ///< Ts
void renderModeOperator(Interpreter& interpreter);               ///< Tr
void fontSizeOperator(Interpreter& interpreter);                 ///< Tf
void startOfLineOperator(Interpreter& interpreter);              ///< Td
void startOfLineLeadingOperator(Interpreter& interpreter);       ///< TD
void setMatrixOperator(Interpreter& interpreter);                ///< Tm
void endOfLineOperator(Interpreter& interpreter);                ///< T*
void justifiedRenderOperator(Interpreter& interpreter);          ///< Tj
void displacedRenderOperator(Interpreter& interpreter);          ///< TJ
void endOfLinePlainRenderOperator(Interpreter& interpreter);     ///< '
void endOfLineJustifiedRenderOperator(Interpreter& interpreter); ///< "

// What is left out so far (reader/content/omitted_operators.cpp)
void beginImageOperator(Interpreter& interpreter);  ///< BI
void dataImageOperator(Interpreter& interpreter);   ///< ID
void endImageOperator(Interpreter& interpreter);    ///< EI
void doObjectOperator(Interpreter& interpreter);    ///< Do
void charWidthOperator(Interpreter& interpreter);   ///< d0
void cacheDeviceOperator(Interpreter& interpreter); ///< d1

// Further ones of the extended profile (reader/content/extended_operators.cpp)
void shadingOperator(Interpreter& interpreter);       ///< sh
void fillSpaceOperator(Interpreter& interpreter);     ///< cs
void strokeSpaceOperator(Interpreter& interpreter);   ///< CS
void fillColourOperator(Interpreter& interpreter);    ///< sc, scn
void strokeColourOperator(Interpreter& interpreter);  ///< SC, SCN
void externalStateOperator(Interpreter& interpreter); ///< gs: line parameters
void invisibleOperator(Interpreter& interpreter);     ///< BX, EX: nothing to draw

// What is noted and not drawn (reader/content/marked_operators.cpp)
void intentOperator(Interpreter& interpreter);          ///< ri
void markPointOperator(Interpreter& interpreter);       ///< MP, DP
void beginMarkOperator(Interpreter& interpreter);       ///< BMC
void beginPropertiesOperator(Interpreter& interpreter); ///< BDC
void endMarkOperator(Interpreter& interpreter);         ///< EMC

} // namespace corvane
