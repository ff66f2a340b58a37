// The content table: every operator of a page once, with its operands.
#include "reader/content/content_keywords.h"

#include "reader/content/content_operators.h"
#include "runtime/rules.h"

#include <array>

namespace corvane {

namespace {

// "f" and "f*" go to the closing handlers and "F" and "F*" to the plain ones: filling closes a
// path, and the host's path is to say so.
constexpr std::array originalRows = {
    ContentKeyword{"null", "", nullOperand, true},
    ContentKeyword{"true", "", trueOperand, true},
    ContentKeyword{"false", "", falseOperand, true},
    ContentKeyword{"g", "x", grayFillOperator},
    ContentKeyword{"G", "x", grayStrokeOperator},
    ContentKeyword{"k", "xxxx", cmykFillOperator},
    ContentKeyword{"K", "xxxx", cmykStrokeOperator},
    ContentKeyword{"rg", "xxx", rgbFillOperator},
    ContentKeyword{"RG", "xxx", rgbStrokeOperator},
    ContentKeyword{"cm", "xxxxxx", concatOperator},
    ContentKeyword{"d", "ax", dashOperator},
    ContentKeyword{"i", "x", flatOperator},
    ContentKeyword{"j", "x", joinOperator},
    ContentKeyword{"J", "x", capOperator},
    ContentKeyword{"M", "x", miterOperator},
    ContentKeyword{"q", "", saveOperator},
    ContentKeyword{"Q", "", restoreOperator},
    ContentKeyword{"w", "x", widthOperator},
    ContentKeyword{"h", "", closeOperator},
    ContentKeyword{"m", "xx", moveToOperator},
    ContentKeyword{"l", "xx", lineToOperator},
    ContentKeyword{"c", "xxxxxx", curveTo123Operator},
    ContentKeyword{"v", "xxxx", curveTo23Operator},
    ContentKeyword{"y", "xxxx", curveTo13Operator},
    ContentKeyword{"re", "xxxx", rectangleOperator},
    ContentKeyword{"b", "", closeFillStrokePathOperator},
    ContentKeyword{"B", "", fillStrokePathOperator},
    ContentKeyword{"b*", "", closeEofillStrokePathOperator},
    ContentKeyword{"B*", "", eofillStrokePathOperator},
    ContentKeyword{"E", "", resetPathOperator},
    ContentKeyword{"f", "", closeFillPathOperator},
    ContentKeyword{"F", "", fillPathOperator},
    ContentKeyword{"f*", "", closeEofillPathOperator},
    ContentKeyword{"F*", "", eofillPathOperator},
    ContentKeyword{"n", "", resetPathOperator},
    ContentKeyword{"s", "", closeStrokePathOperator},
    ContentKeyword{"S", "", strokePathOperator},
    ContentKeyword{"W", "", clipPathOperator},
    ContentKeyword{"W*", "", eoclipPathOperator},
    ContentKeyword{"BT", "", passedTextOperator},
    ContentKeyword{"ET", "", passedTextOperator},
    ContentKeyword{"Tc", "x", passedTextOperator},
    ContentKeyword{"Tf", "lx", passedTextOperator},
    ContentKeyword{"TL", "x", passedTextOperator},
    ContentKeyword{"Tr", "x", passedTextOperator},
    ContentKeyword{"Ts", "x", passedTextOperator},
    ContentKeyword{"Tw", "x", passedTextOperator},
    ContentKeyword{"Tz", "x", passedTextOperator},
    ContentKeyword{"Td", "xx", passedTextOperator},
    ContentKeyword{"TD", "xx", passedTextOperator},
    ContentKeyword{"Tm", "xxxxxx", passedTextOperator},
    ContentKeyword{"T*", "", passedTextOperator},
    ContentKeyword{"Tj", "t", omittedTextOperator},
    ContentKeyword{"TJ", "a", omittedTextOperator},
    ContentKeyword{"'", "t", omittedTextOperator},
    ContentKeyword{"\"", "xxt", omittedTextOperator},
    ContentKeyword{"BI", "", beginImageOperator},
    ContentKeyword{"ID", "", dataImageOperator},
    ContentKeyword{"EI", "", endImageOperator},
    ContentKeyword{"Do", "l", doObjectOperator},
    ContentKeyword{"d0", "xx", charWidthOperator},
    ContentKeyword{"d1", "xxxxxx", cacheDeviceOperator},
};

constexpr std::array extendedRows = {
    ContentKeyword{"cs", "l", fillSpaceOperator},
    ContentKeyword{"CS", "l", strokeSpaceOperator},
    // How many operands a colour has depends on its space.
    ContentKeyword{"sc", "", fillColourOperator},
    ContentKeyword{"SC", "", strokeColourOperator},
    ContentKeyword{"scn", "", fillColourOperator},
    ContentKeyword{"SCN", "", strokeColourOperator},
    ContentKeyword{"gs", "l", externalStateOperator},
    ContentKeyword{"sh", "l", shadingOperator},
    ContentKeyword{"ri", "l", intentOperator},
    ContentKeyword{"MP", "l", markOperator},
    ContentKeyword{"DP", "l?", markOperator},
    ContentKeyword{"BMC", "l", markOperator},
    ContentKeyword{"BDC", "l?", propertiesOperator},
    ContentKeyword{"EMC", "", invisibleOperator},
    ContentKeyword{"BX", "", invisibleOperator},
    ContentKeyword{"EX", "", invisibleOperator},
};

/// The rows of the profile in force.
std::vector<ContentKeyword> rowsInForce() {
    std::vector<ContentKeyword> all(originalRows.begin(), originalRows.end());
    if (rules().profile == Profile::extended) {
        all.insert(all.end(), extendedRows.begin(), extendedRows.end());
    }
    return all;
}

} // namespace

ContentKeywords::ContentKeywords() : rows(rowsInForce()), table(rows) {}

} // namespace corvane
