// The content table: every operator of a page once, with its operands.
#include "reader/content/content_keywords.h"

#include "reader/classic/line_operators.h"
#include "reader/content/content_operators.h"
#include "reader/epsf/image_operators.h"
#include "runtime/rules.h"

#include <array>

namespace corvane {

namespace {

using Role = OperatorRole;

// "f" and "f*" go to the closing handlers and "F" and "F*" to the plain ones: filling closes a
// path, and the host's path is to say so.
constexpr std::array commonRows = {
    ContentKeyword{"null", "", nullOperand, Role::operand},
    ContentKeyword{"true", "", trueOperand, Role::operand},
    ContentKeyword{"false", "", falseOperand, Role::operand},
    ContentKeyword{"g", "x", grayFillOperator, Role::fillSpace},
    ContentKeyword{"G", "x", grayStrokeOperator, Role::strokeSpace},
    ContentKeyword{"k", "xxxx", cmykFillOperator, Role::fillSpace},
    ContentKeyword{"K", "xxxx", cmykStrokeOperator, Role::strokeSpace},
    ContentKeyword{"rg", "xxx", rgbFillOperator, Role::fillSpace},
    ContentKeyword{"RG", "xxx", rgbStrokeOperator, Role::strokeSpace},
    ContentKeyword{"cm", "xxxxxx", concatOperator, Role::matrix},
    ContentKeyword{"d", "ax", dashOperator, Role::dash},
    ContentKeyword{"i", "x", flatOperator, Role::flatness},
    ContentKeyword{"j", "x", joinOperator, Role::join},
    ContentKeyword{"J", "x", capOperator, Role::cap},
    ContentKeyword{"M", "x", miterOperator, Role::miterLimit},
    ContentKeyword{"q", "", saveOperator, Role::save},
    ContentKeyword{"Q", "", restoreOperator, Role::restore},
    ContentKeyword{"w", "x", widthOperator, Role::lineWidth},
    ContentKeyword{"h", "", closeOperator, Role::construct},
    ContentKeyword{"m", "xx", moveToOperator, Role::construct},
    ContentKeyword{"l", "xx", lineToOperator, Role::construct},
    ContentKeyword{"c", "xxxxxx", curveTo123Operator, Role::construct},
    ContentKeyword{"v", "xxxx", curveTo23Operator, Role::construct},
    ContentKeyword{"y", "xxxx", curveTo13Operator, Role::construct},
    ContentKeyword{"re", "xxxx", rectangleOperator, Role::construct},
    ContentKeyword{"b", "", closeFillStrokePathOperator, Role::paintPath},
    ContentKeyword{"B", "", fillStrokePathOperator, Role::paintPath},
    ContentKeyword{"b*", "", closeEofillStrokePathOperator, Role::paintPath},
    ContentKeyword{"B*", "", eofillStrokePathOperator, Role::paintPath},
    ContentKeyword{"E", "", resetPathOperator, Role::paintPath},
    ContentKeyword{"f", "", closeFillPathOperator, Role::paintPath},
    ContentKeyword{"F", "", fillPathOperator, Role::paintPath},
    ContentKeyword{"f*", "", closeEofillPathOperator, Role::paintPath},
    ContentKeyword{"F*", "", eofillPathOperator, Role::paintPath},
    ContentKeyword{"n", "", resetPathOperator, Role::paintPath},
    ContentKeyword{"s", "", closeStrokePathOperator, Role::paintPath},
    ContentKeyword{"S", "", strokePathOperator, Role::paintPath},
    ContentKeyword{"W", "", clipPathOperator, Role::clipWord},
    ContentKeyword{"W*", "", eoclipPathOperator, Role::clipWord},
    ContentKeyword{"d0", "xx", charWidthOperator},
    ContentKeyword{"d1", "xxxxxx", cacheDeviceOperator},
};

/// Images of today are pixels that the host holds, those of the original profile linked files.
constexpr std::array imageRows = {
    ContentKeyword{"BI", "", beginImageOperator, Role::beginImage},
    ContentKeyword{"ID", "", dataImageOperator, Role::imageData},
    ContentKeyword{"EI", "", endImageOperator, Role::endImage},
    ContentKeyword{"Do", "l", doObjectOperator, Role::object},
};

constexpr std::array classicImageRows = {
    ContentKeyword{"BI", "", classic::beginImageOperator, Role::beginImage},
    ContentKeyword{"ID", "", classic::dataImageOperator, Role::imageData},
    ContentKeyword{"EI", "", classic::endImageOperator, Role::endImage},
    ContentKeyword{"Do", "l", classic::doObjectOperator, Role::object},
};

/// Text of today goes by the letters that fonts of the page show, that of the original profile by
/// the runs of the classic host.
constexpr std::array textRows = {
    ContentKeyword{"BT", "", beginTextOperator, Role::beginText},
    ContentKeyword{"ET", "", endTextOperator, Role::endText},
    ContentKeyword{"Tc", "x", charSpaceOperator, Role::textState},
    ContentKeyword{"Tf", "lx", fontSizeOperator, Role::font},
    ContentKeyword{"TL", "x", leadingOperator, Role::textState},
    ContentKeyword{"Tr", "x", renderModeOperator, Role::textState},
    ContentKeyword{"Ts", "x", riseOperator, Role::textState},
    ContentKeyword{"Tw", "x", wordSpaceOperator, Role::textState},
    ContentKeyword{"Tz", "x", scaleOperator, Role::textState},
    ContentKeyword{"Td", "xx", startOfLineOperator, Role::textState},
    ContentKeyword{"TD", "xx", startOfLineLeadingOperator, Role::textState},
    ContentKeyword{"Tm", "xxxxxx", setMatrixOperator, Role::textState},
    ContentKeyword{"T*", "", endOfLineOperator, Role::textState},
    ContentKeyword{"Tj", "t", justifiedRenderOperator, Role::show},
    ContentKeyword{"TJ", "a", displacedRenderOperator, Role::show},
    ContentKeyword{"'", "t", endOfLinePlainRenderOperator, Role::show},
    ContentKeyword{"\"", "xxt", endOfLineJustifiedRenderOperator, Role::show},
};

constexpr std::array classicTextRows = {
    ContentKeyword{"BT", "", classic::beginTextOperator, Role::beginText},
    ContentKeyword{"ET", "", classic::endTextOperator, Role::endText},
    ContentKeyword{"Tc", "x", classic::charSpaceOperator, Role::textState},
    ContentKeyword{"Tf", "lx", classic::fontSizeOperator, Role::font},
    ContentKeyword{"TL", "x", classic::leadingOperator, Role::textState},
    ContentKeyword{"Tr", "x", classic::renderModeOperator, Role::textState},
    ContentKeyword{"Ts", "x", classic::riseOperator, Role::textState},
    ContentKeyword{"Tw", "x", classic::wordSpaceOperator, Role::textState},
    ContentKeyword{"Tz", "x", classic::scaleOperator, Role::textState},
    ContentKeyword{"Td", "xx", classic::startOfLineOperator, Role::textState},
    ContentKeyword{"TD", "xx", classic::startOfLineLeadingOperator, Role::textState},
    ContentKeyword{"Tm", "xxxxxx", classic::setMatrixOperator, Role::textState},
    ContentKeyword{"T*", "", classic::endOfLineOperator, Role::textState},
    ContentKeyword{"Tj", "t", classic::justifiedRenderOperator, Role::show},
    ContentKeyword{"TJ", "a", classic::displacedRenderOperator, Role::show},
    ContentKeyword{"'", "t", classic::endOfLinePlainRenderOperator, Role::show},
    ContentKeyword{"\"", "xxt", classic::endOfLineJustifiedRenderOperator, Role::show},
};

constexpr std::array extendedRows = {
    ContentKeyword{"cs", "l", fillSpaceOperator, Role::fillSpace},
    ContentKeyword{"CS", "l", strokeSpaceOperator, Role::strokeSpace},
    // How many operands a colour has depends on its space.
    ContentKeyword{"sc", "", fillColourOperator, Role::fillColour},
    ContentKeyword{"SC", "", strokeColourOperator, Role::strokeColour},
    ContentKeyword{"scn", "", fillColourOperator, Role::fillColour},
    ContentKeyword{"SCN", "", strokeColourOperator, Role::strokeColour},
    ContentKeyword{"gs", "l", externalStateOperator, Role::external},
    ContentKeyword{"sh", "l", shadingOperator, Role::paint},
    ContentKeyword{"ri", "l", intentOperator, Role::intent},
    ContentKeyword{"MP", "l", markPointOperator},
    ContentKeyword{"DP", "l?", markPointOperator},
    ContentKeyword{"BMC", "l", beginMarkOperator, Role::beginMarked},
    ContentKeyword{"BDC", "l?", beginPropertiesOperator, Role::beginMarked},
    ContentKeyword{"EMC", "", endMarkOperator, Role::endMarked},
    ContentKeyword{"BX", "", invisibleOperator},
    ContentKeyword{"EX", "", invisibleOperator},
};

/// The rows of the profile in force.
std::vector<ContentKeyword> rowsInForce() {
    std::vector<ContentKeyword> all(commonRows.begin(), commonRows.end());
    if (rules().profile == Profile::original) {
        all.insert(all.end(), classicTextRows.begin(), classicTextRows.end());
        all.insert(all.end(), classicImageRows.begin(), classicImageRows.end());
    } else {
        all.insert(all.end(), textRows.begin(), textRows.end());
        all.insert(all.end(), imageRows.begin(), imageRows.end());
        all.insert(all.end(), extendedRows.begin(), extendedRows.end());
    }
    return all;
}

} // namespace

ContentKeywords::ContentKeywords() : rows(rowsInForce()), table(rows) {}

} // namespace corvane
