#include "app/svg/paint/paint_servers.h"

#include "app/artwork/geometry/path_walk.h"
#include "app/artwork/storage/number_index.h"
#include "app/svg/markup.h"
#include "app/svg/paint/paint_attributes.h"
#include "app/svg/style.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <tuple>

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

/// Calls `use` for the gradients and patterns that a path is painted with.
template <class Use>
void forEachServer(const PathStyle& style, Use use) {
    const Pen pen = drawnPen(style);
    const auto each = [&](const Colour& colour) {
        use(ServerUse{colour.source, Pen()});
        if (pen != Pen()) {
            use(ServerUse{colour.source, pen});
        }
    };
    if (style.fillPaint != 0 && isServer(style.fill)) {
        each(style.fill);
    }
    if (style.strokePaint != 0 && isServer(style.stroke)) {
        each(style.stroke);
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

std::size_t PaintServers::UseHash::operator()(const ServerUse& use) const {
    Hash hash;
    hash.add(static_cast<std::uint32_t>(use.source));
    for (const double entry : {use.pen.xx, use.pen.xy, use.pen.yy}) {
        hash.addNumber(entry);
    }
    return hash.value();
}

std::vector<ServerUse> PaintServers::claim(const PathStyle& style) {
    std::vector<ServerUse> claimed;
    const auto add = [&](const ServerUse& use) {
        if (ids_.try_emplace(use).second) {
            claimed.push_back(use);
        }
    };
    forEachServer(style, add);
    for (std::size_t i = 0; i < claimed.size(); ++i) {
        if (claimed[i].pen == Pen() && isPattern(document_, claimed[i].source)) {
            forEachPath(document_, document_.pattern(claimed[i].source).tile,
                        [&](Art path) { forEachServer(document_.style(path), add); });
        }
    }
    // A tile only uses patterns that were made before its own: their handles are smaller. What a
    // pen transforms comes behind what it takes the rest from.
    std::ranges::stable_sort(claimed, {}, [&](const ServerUse& use) {
        return std::tuple(isPattern(document_, use.source), use.source, use.pen != Pen());
    });
    for (const ServerUse& use : claimed) {
        ids_[use] = isPattern(document_, use.source) ? "pattern" + std::to_string(++patterns_)
                                                     : "gradient" + std::to_string(++gradients_);
    }
    return claimed;
}

/// To the page.
RealMatrix PaintServers::gradientMatrix(const Gradient& gradient) const {
    return multiply(gradient.matrix, {1, 0, 0, -1, -left_, top_});
}

RealMatrix PaintServers::patternMatrix(const Pattern& pattern) const {
    const RealMatrix page{1, 0, 0, -1, -left_, top_};
    const RealMatrix pageUndone{1, 0, 0, -1, left_, top_};
    return multiply(multiply(pageUndone, pattern.matrix), page);
}

void PaintServers::writeUnderPen(TextOutput& out, const ServerUse& use, int depth) const {
    const bool tiles = isPattern(document_, use.source);
    const RealMatrix onPage = tiles ? patternMatrix(document_.pattern(use.source))
                                    : gradientMatrix(document_.gradient(use.source));
    const RealMatrix back = inverse(penOnPage(use.pen)).value_or(RealMatrix());
    writeIndent(out, depth);
    out.text(tiles                                   ? "<pattern"
             : document_.gradient(use.source).radial ? "<radialGradient"
                                                     : "<linearGradient");
    writePlainAttribute(out, "id", id(use.source, use.pen));
    writePlainAttribute(out, "xmlns:xlink", "http://www.w3.org/1999/xlink");
    writePlainAttribute(out, "xlink:href", "#" + id(use.source));
    writeTransform(out, tiles ? "patternTransform" : "gradientTransform", multiply(onPage, back));
    out.text("/>");
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
    writeTransform(out, "gradientTransform", gradientMatrix(gradient));
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

void PaintServers::writePen(TextOutput& out, const Pen& pen) {
    writeTransform(out, "transform", penOnPage(pen));
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
    writeTransform(out, "patternTransform", patternMatrix(pattern));
    if (tidy(width) != stepX) {
        writeDoubleAttribute(out, "data-cell-width", tidy(width));
    }
    if (tidy(height) != stepY) {
        writeDoubleAttribute(out, "data-cell-height", tidy(height));
    }
}

} // namespace corvane
