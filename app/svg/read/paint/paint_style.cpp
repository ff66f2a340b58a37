#include "app/svg/read/paint/paint_style.h"

#include "app/artwork/geometry/arithmetic.h"
#include "app/svg/read/values/fixed_number.h"
#include "app/svg/read/values/number.h"
#include "app/svg/style.h"
#include "host/matrix.h"
#include "host/pen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

namespace {

/// Editors write three or more digits after the point.
constexpr std::int64_t visibleDifference = fixedOne / 1000;

std::optional<Fixed> twinNumber(std::string_view text) {
    TextCursor cursor(text);
    double number = 0;
    if (!cursor.number(number) || !cursor.atEnd()) {
        return std::nullopt;
    }
    return saturate(wideFixed(number));
}

Fixed widthOf(double width, std::string_view hidden) {
    const Fixed seen = saturate(wideFixed(width));
    if (const auto exact = twinNumber(hidden)) {
        PathStyle style;
        style.lineWidth = *exact;
        if (std::abs(visibleWidth(style) - seen) <= visibleDifference) {
            return *exact;
        }
    }
    return seen;
}

/// The first `size` entries of `dashes`, over and over, are all of them.
bool repeats(std::span<const double> dashes, std::size_t size) {
    if (dashes.size() % size != 0) {
        return false;
    }
    for (std::size_t i = size; i < dashes.size(); ++i) {
        if (dashes[i] != dashes[i - size]) {
            return false;
        }
    }
    return true;
}

void setDashes(PathStyle& style, std::span<const double> dashes, Tally& tally) {
    const std::size_t room = std::size(style.dash);
    std::size_t count = dashes.size();
    if (count > room) {
        count = 1;
        while (count < room && !repeats(dashes, count)) {
            ++count;
        }
        if (!repeats(dashes, count)) {
            tally.add("stroke-dasharray");
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        style.dash[i] = saturate(wideFixed(dashes[i]));
    }
    style.dashCount = static_cast<std::int16_t>(count);
}

/// Entries that are looked at; a list is read again for each path that inherits it.
constexpr std::size_t mostDashes = 256;

/// Entries of a dash list, in user units; empty where the list is wrong or draws nothing.
std::vector<double> parseDashes(std::string_view text, const LengthContext& lengths) {
    std::vector<double> dashes;
    double sum = 0;
    TextCursor cursor(text);
    for (cursor.skipBlanks(); !cursor.atEnd() && dashes.size() < mostDashes;
         cursor.skipSeparator()) {
        const std::string_view before = cursor.rest();
        while (!cursor.atEnd() && !isBlank(cursor.peek()) && cursor.peek() != ',') {
            cursor.skip();
        }
        const auto length = parseLength(cursor.since(before), Axis::other, lengths);
        if (!length || *length < 0) {
            return {};
        }
        dashes.push_back(*length);
        sum += *length;
    }
    if (sum == 0) {
        dashes.clear();
    }
    return dashes;
}

std::vector<double> hiddenDashes(std::string_view text) {
    std::vector<double> dashes;
    TextCursor cursor(text);
    double dash = 0;
    for (cursor.skipBlanks(); cursor.number(dash); cursor.skipSeparator()) {
        dashes.push_back(dash);
    }
    return dashes;
}

/// In the original profile, and where no pen says what the matrix makes of a line, its mean width
/// counts.
StretchedPen penOf(const ComputedStyle& style, const RealMatrix& toArt, ReadingContext& context) {
    if (style.keepsWidth) {
        return {{}, context.pixel};
    }
    const std::optional<StretchedPen> pen = penUnder(toArt);
    if (pen && (context.holdsAppearance || pen->pen == Pen())) {
        return *pen;
    }
    context.tally.add("stroke under a skew");
    return {{}, meanStretch(toArt)};
}

void setStroke(PathStyle& path, const ComputedStyle& style, const Attributes& attributes,
               const RealMatrix& toArt, ReadingContext& context) {
    const StretchedPen pen = penOf(style, toArt, context);
    const double stretch = pen.stretch;
    path.pen = pen.pen;
    path.stroke = style.strokeTwin.resolve(style.stroke.colour, context.document);
    path.lineWidth = widthOf(style.strokeWidth * stretch, attributes[Attribute::dataStrokeWidth]);
    std::vector<double> dashes = parseDashes(style.dashes, {style.viewport, style.fontSize});
    for (double& dash : dashes) {
        dash *= stretch;
    }
    if (dashes.empty()) {
        dashes = hiddenDashes(attributes[Attribute::dataStrokeDasharray]);
    }
    setDashes(path, dashes, context.tally);
    path.dashPhase = saturate(wideFixed(style.dashOffset * stretch));
    path.cap = style.cap;
    path.join = style.join;
    path.miterLimit = saturate(wideFixed(style.miterLimit));
    const auto limit = twinNumber(attributes[Attribute::dataStrokeMiterlimit]);
    if (limit && std::abs(std::max(*limit, fixedOne) - path.miterLimit) <= visibleDifference) {
        path.miterLimit = *limit;
    }
}

void setResolution(PathStyle& path, const Attributes& attributes) {
    path.resolution = twinNumber(attributes[Attribute::dataResolution]).value_or(path.resolution);
}

/// Whether a paint is seen at all, as far as artwork can say; counts one that is partly transparent
/// where it cannot.
bool isSeen(const ComputedStyle& style, const PaintValue& paint, double opacity,
            ReadingContext& context) {
    if (context.holdsAppearance) {
        return paint.kind != PaintValue::Kind::none && paint.alpha != 0;
    }
    if (style.transparent || paint.kind == PaintValue::Kind::none || opacity == 0) {
        return false;
    }
    if (opacity < 1) {
        context.tally.add("opacity");
    }
    return true;
}

} // namespace

double fillOpacityOf(const ComputedStyle& style) {
    return style.fillOpacity * style.fill.alpha;
}

double strokeOpacityOf(const ComputedStyle& style) {
    return style.strokeOpacity * style.stroke.alpha;
}

PathStyle paintedStyle(const ComputedStyle& style, const Attributes& attributes,
                       const RealMatrix& toArt, ReadingContext& context) {
    PathStyle path;
    if (isSeen(style, style.fill, fillOpacityOf(style), context)) {
        path.fillPaint = 1;
        path.fill = style.fillTwin.resolve(style.fill.colour, context.document);
        path.rule = style.fillRule;
    }
    if (style.strokeWidth > 0 && isSeen(style, style.stroke, strokeOpacityOf(style), context)) {
        path.strokePaint = 1;
        setStroke(path, style, attributes, toArt, context);
    }
    setResolution(path, attributes);
    return path;
}

PathStyle clippingStyle(const ComputedStyle& style, const Attributes& attributes,
                        const RealMatrix& toArt, ReadingContext& context) {
    PathStyle path;
    path.clip = 1;
    path.rule = style.clipRule;
    if (style.saysFill && style.fill.kind == PaintValue::Kind::colour) {
        path.fillPaint = 1;
        path.fill = style.fillTwin.resolve(style.fill.colour, context.document);
    }
    if (style.saysStroke && style.stroke.kind == PaintValue::Kind::colour) {
        path.strokePaint = 1;
        const double stretch = meanStretch(toArt); // nothing is drawn of it
        setStroke(path, style, attributes, {stretch, 0, 0, stretch, 0, 0}, context);
    }
    setResolution(path, attributes);
    return path;
}

} // namespace corvane
