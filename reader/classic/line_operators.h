// The operators of text in the original profile. Their operands were checked by the row of the
// keyword table that names them; `BT` within a text object and all others outside of one raise
// `context`.
#pragma once

namespace corvane {
struct Interpreter;
}

namespace corvane::classic {

void beginTextOperator(Interpreter& interpreter);                ///< BT
void endTextOperator(Interpreter& interpreter);                  ///< ET
void charSpaceOperator(Interpreter& interpreter);                ///< Tc
void wordSpaceOperator(Interpreter& interpreter);                ///< Tw
void scaleOperator(Interpreter& interpreter);                    ///< Tz
void leadingOperator(Interpreter& interpreter);                  ///< TL
void riseOperator(Interpreter& interpreter);                     ///< Ts
void renderModeOperator(Interpreter& interpreter);               ///< Tr: 0 to 7, otherwise `type`
void fontSizeOperator(Interpreter& interpreter);                 ///< Tf
void startOfLineOperator(Interpreter& interpreter);              ///< Td
void startOfLineLeadingOperator(Interpreter& interpreter);       ///< TD
void setMatrixOperator(Interpreter& interpreter);                ///< Tm
void endOfLineOperator(Interpreter& interpreter);                ///< T*
void justifiedRenderOperator(Interpreter& interpreter);          ///< Tj
void displacedRenderOperator(Interpreter& interpreter);          ///< TJ
void endOfLinePlainRenderOperator(Interpreter& interpreter);     ///< '
void endOfLineJustifiedRenderOperator(Interpreter& interpreter); ///< "

} // namespace corvane::classic
