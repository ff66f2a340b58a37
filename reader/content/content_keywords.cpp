// The content table: every operator of a page once, with its operands.
#include "reader/content/content_operators.h"
#include "reader/syntax/keywords.h"

#include <array>

namespace corvane {

namespace {

// "f" and "f*" go to the closing handlers and "F" and "F*" to the plain ones: filling closes a
// path, and the host's path is to say so.
constexpr std::array rows = {
    Keyword{"null", "", nullOperator},
    Keyword{"true", "", trueOperator},
    Keyword{"false", "", falseOperator},
    Keyword{"g", "x", grayFillOperator},
    Keyword{"G", "x", grayStrokeOperator},
    Keyword{"k", "xxxx", cmykFillOperator},
    Keyword{"K", "xxxx", cmykStrokeOperator},
    Keyword{"rg", "xxx", rgbFillOperator},
    Keyword{"RG", "xxx", rgbStrokeOperator},
    Keyword{"cm", "xxxxxx", concatOperator},
    Keyword{"d", "ax", dashOperator},
    Keyword{"i", "x", flatOperator},
    Keyword{"j", "x", joinOperator},
    Keyword{"J", "x", capOperator},
    Keyword{"M", "x", miterOperator},
    Keyword{"q", "", saveOperator},
    Keyword{"Q", "", restoreOperator},
    Keyword{"w", "x", widthOperator},
    Keyword{"h", "", closeOperator},
    Keyword{"m", "xx", moveToOperator},
    Keyword{"l", "xx", lineToOperator},
    Keyword{"c", "xxxxxx", curveTo123Operator},
    Keyword{"v", "xxxx", curveTo23Operator},
    Keyword{"y", "xxxx", curveTo13Operator},
    Keyword{"re", "xxxx", rectangleOperator},
    Keyword{"b", "", closeFillStrokePathOperator},
    Keyword{"B", "", fillStrokePathOperator},
    Keyword{"b*", "", closeEofillStrokePathOperator},
    Keyword{"B*", "", eofillStrokePathOperator},
    Keyword{"E", "", resetPathOperator},
    Keyword{"f", "", closeFillPathOperator},
    Keyword{"F", "", fillPathOperator},
    Keyword{"f*", "", closeEofillPathOperator},
    Keyword{"F*", "", eofillPathOperator},
    Keyword{"n", "", resetPathOperator},
    Keyword{"s", "", closeStrokePathOperator},
    Keyword{"S", "", strokePathOperator},
    Keyword{"W", "", clipPathOperator},
    Keyword{"W*", "", eoclipPathOperator},
    Keyword{"BT", "", passedTextOperator},
    Keyword{"ET", "", passedTextOperator},
    Keyword{"Tc", "x", passedTextOperator},
    Keyword{"Tf", "lx", passedTextOperator},
    Keyword{"TL", "x", passedTextOperator},
    Keyword{"Tr", "x", passedTextOperator},
    Keyword{"Ts", "x", passedTextOperator},
    Keyword{"Tw", "x", passedTextOperator},
    Keyword{"Tz", "x", passedTextOperator},
    Keyword{"Td", "xx", passedTextOperator},
    Keyword{"TD", "xx", passedTextOperator},
    Keyword{"Tm", "xxxxxx", passedTextOperator},
    Keyword{"T*", "", passedTextOperator},
    Keyword{"Tj", "t", omittedTextOperator},
    Keyword{"TJ", "a", omittedTextOperator},
    Keyword{"'", "t", omittedTextOperator},
    Keyword{"\"", "xxt", omittedTextOperator},
    Keyword{"BI", "", beginImageOperator},
    Keyword{"ID", "", dataImageOperator},
    Keyword{"EI", "", endImageOperator},
    Keyword{"Do", "l", doObjectOperator},
    Keyword{"d0", "xx", charWidthOperator},
    Keyword{"d1", "xxxxxx", cacheDeviceOperator},
};

constexpr std::array extendedRows = {
    Keyword{"cs", "l", fillSpaceOperator},
    Keyword{"CS", "l", strokeSpaceOperator},
    // How many operands a colour has depends on its space.
    Keyword{"sc", "", fillColourOperator},
    Keyword{"SC", "", strokeColourOperator},
    Keyword{"scn", "", fillColourOperator},
    Keyword{"SCN", "", strokeColourOperator},
    Keyword{"gs", "l", externalStateOperator},
    Keyword{"sh", "l", shadingOperator},
    Keyword{"ri", "l", invisibleOperator},
    Keyword{"MP", "l", invisibleOperator},
    Keyword{"DP", "l?", invisibleOperator},
    Keyword{"BMC", "l", invisibleOperator},
    Keyword{"BDC", "l?", invisibleOperator},
    Keyword{"EMC", "", invisibleOperator},
    Keyword{"BX", "", invisibleOperator},
    Keyword{"EX", "", invisibleOperator},
};

} // namespace

std::span<const Keyword> contentRows() {
    return rows;
}
std::span<const Keyword> extendedContentRows() {
    return extendedRows;
}

} // namespace corvane
