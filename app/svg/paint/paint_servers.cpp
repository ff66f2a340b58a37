#include "app/svg/paint/paint_servers.h"

#include "app/artwork/path_walk.h"
#include "app/svg/markup.h"
#include "app/svg/paint/paint_attributes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace corvane {

namespace {

double points(std::int64_t fixed) {
    return static_cast<double>(fixed) / fixedOne;
}

/// A number that comes from a sum with the page's corner, without the sum's last digits.
double tidy(double number) {
    constexpr double digits = 1e9;
    const double rounded = std::round(number * digits) / digits;
    return std::isfinite(rounded) ? rounded : number;
}

bool isServer(const Colour& colour) {
    return colour.kind == ColourKind::gradient || colour.kind == ColourKind::pattern;
}

/// Calls `use(source)` for the gradients and patterns that a path is painted with.
template <class Use>
void forEachServer(const PathStyle& style, Use use) {
    if (style.fillPaint != 0 && isServer(style.fill)) {
        use(style.fill.source);
    }
    if (style.strokePaint != 0 && isServer(style.stroke)) {
        use(style.stroke.source);
    }
}

bool isPattern(const Document& document, PaintSource source) {
    return document.paintKind(source) == ColourKind::pattern;
}

void writeTransform(TextOutput& out, std::string_view name, const RealMatrix& map) {
    if (map == RealMatrix{}) {
        return;
    }
    out.text(" ");
    out.text(name);
    out.text("=\"matrix(");
    for (const double entry : {map.a, map.b, map.c, map.d, tidy(map.tx)}) {
        writeDouble(out, entry);
        out.text(" ");
    }
    writeDouble(out, tidy(map.ty));
    out.text(")\"");
}

/// The art of a tile has coordinates of the page; without a view box, renderers count them from the
/// pattern's `x` and `y`.
void writeViewBox(TextOutput& out, double x, double y, double width, double height) {
    out.text(" viewBox=\"");
    for (const double number : {x, y, width}) {
        writeDouble(out, number);
        out.text(" ");
    }
    writeDouble(out, height);
    out.text("\"");
}

void writePlaces(TextOutput& out, const Gradient& gradient) {
    if (!gradient.radial) {
        writeDoubleAttribute(out, "x1", gradient.x1);
        writeDoubleAttribute(out, "y1", gradient.y1);
        writeDoubleAttribute(out, "x2", gradient.x2);
        writeDoubleAttribute(out, "y2", gradient.y2);
        return;
    }
    writeDoubleAttribute(out, "cx", gradient.x2);
    writeDoubleAttribute(out, "cy", gradient.y2);
    writeDoubleAttribute(out, "r", gradient.r2);
    if (gradient.x1 != gradient.x2 || gradient.y1 != gradient.y2) {
        writeDoubleAttribute(out, "fx", gradient.x1);
        writeDoubleAttribute(out, "fy", gradient.y1);
    }
    if (gradient.r1 != 0) {
        writeDoubleAttribute(out, "fr", gradient.r1);
    }
}

} // namespace

PaintServers::PaintServers(const Document& document, PageCorner corner)
    : document_(document), left_(points(corner.left)), top_(points(corner.top)) {}

std::vector<PaintSource> PaintServers::claim(const PathStyle& style) {
    std::vector<PaintSource> claimed;
    const auto add = [&](PaintSource source) {
        if (ids_.try_emplace(source).second) {
            claimed.push_back(source);
        }
    };
    forEachServer(style, add);
    for (std::size_t i = 0; i < claimed.size(); ++i) {
        if (isPattern(document_, claimed[i])) {
            forEachPath(document_, document_.pattern(claimed[i]).tile,
                        [&](Art path) { forEachServer(document_.style(path), add); });
        }
    }
    // A tile only uses patterns that were made before its own: their handles are smaller.
    std::ranges::sort(claimed, [&](PaintSource left, PaintSource right) {
        const bool leftLast = isPattern(document_, left);
        const bool rightLast = isPattern(document_, right);
        return leftLast != rightLast ? rightLast : left < right;
    });
    for (const PaintSource source : claimed) {
        ids_[source] = isPattern(document_, source) ? "pattern" + std::to_string(++patterns_)
                                                    : "gradient" + std::to_string(++gradients_);
    }
    return claimed;
}

void PaintServers::writeGradient(TextOutput& out, PaintSource source, int depth) const {
    const Gradient& gradient = document_.gradient(source);
    const std::string_view name = gradient.radial ? "radialGradient" : "linearGradient";
    writeIndent(out, depth);
    out.text("<");
    out.text(name);
    writePlainAttribute(out, "id", id(source));
    writePlainAttribute(out, "gradientUnits", "userSpaceOnUse");
    writePlaces(out, gradient);
    writeTransform(out, "gradientTransform",
                   multiply(gradient.matrix, {1, 0, 0, -1, -left_, top_}));
    if (gradient.spread != GradientSpread::pad) {
        writePlainAttribute(out, "spreadMethod",
                            gradient.spread == GradientSpread::reflect ? "reflect" : "repeat");
    }
    out.text(">");
    for (const GradientStop& stop : gradient.stops) {
        writeIndent(out, depth + 1);
        out.text("<stop");
        writeDoubleAttribute(out, "offset", stop.offset);
        writeColour(out, stopNames, stop.colour, false);
        if (stop.opacity != 1) {
            writeDoubleAttribute(out, "stop-opacity", stop.opacity);
        }
        out.text("/>");
    }
    writeIndent(out, depth);
    out.text("</");
    out.text(name);
    out.text(">");
}

void PaintServers::writePatternStart(TextOutput& out, PaintSource source, int depth) const {
    const Pattern& pattern = document_.pattern(source);
    const double width = pattern.right - pattern.left;
    const double height = pattern.top - pattern.bottom;
    writeIndent(out, depth);
    out.text("<pattern");
    writePlainAttribute(out, "id", id(source));
    writePlainAttribute(out, "patternUnits", "userSpaceOnUse");
    const double x = tidy(pattern.left - left_);
    const double y = tidy(top_ - (pattern.bottom + pattern.stepY));
    const double stepX = tidy(pattern.stepX);
    const double stepY = tidy(pattern.stepY);
    writeDoubleAttribute(out, "x", x);
    writeDoubleAttribute(out, "y", y);
    writeDoubleAttribute(out, "width", stepX);
    writeDoubleAttribute(out, "height", stepY);
    if (x != 0 || y != 0) {
        writeViewBox(out, x, y, stepX, stepY);
    }
    const RealMatrix page{1, 0, 0, -1, -left_, top_};
    const RealMatrix pageUndone{1, 0, 0, -1, left_, top_};
    writeTransform(out, "patternTransform", multiply(multiply(pageUndone, pattern.matrix), page));
    if (tidy(width) != stepX) {
        writeDoubleAttribute(out, "data-cell-width", tidy(width));
    }
    if (tidy(height) != stepY) {
        writeDoubleAttribute(out, "data-cell-height", tidy(height));
    }
}

} // namespace corvane
