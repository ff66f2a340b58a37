#include "app/svg/style.h"

#include "app/svg/markup.h"
#include "app/svg/paint/paint_attributes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// What SVG and the artwork have in common as defaults.
const PathStyle defaultStyle;

/// A length of the page under a matrix that stretches.
void writeLength(TextOutput& out, std::string_view name, std::int64_t length, double stretch) {
    if (stretch == 1) {
        writeNumberAttribute(out, name, length);
    } else {
        writeDoubleAttribute(out, name, static_cast<double>(length) / fixedOne / stretch);
    }
}

void writeWidth(TextOutput& out, const PathStyle& style, double stretch) {
    if (style.lineWidth != fixedOne || stretch != 1) {
        writeLength(out, "stroke-width", visibleWidth(style), stretch);
    }
    if (style.lineWidth <= 0) {
        writeNumberAttribute(out, "data-stroke-width", style.lineWidth);
    }
}

void writeStretched(TextOutput& out, std::string_view name, std::span<const std::int64_t> lengths,
                    double stretch) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    std::string_view separator;
    for (const std::int64_t length : lengths) {
        out.text(std::exchange(separator, " "));
        writeDouble(out, static_cast<double>(length) / fixedOne / stretch);
    }
    out.text("\"");
}

/// SVG has no negative dashes, and a pattern without length is a line without dashes in both.
void writeDash(TextOutput& out, const PathStyle& style, double stretch) {
    std::array<std::int64_t, 6> dash{};
    std::copy(std::begin(style.dash), std::end(style.dash), dash.begin());
    const std::span<const std::int64_t> used(dash.data(),
                                             static_cast<std::size_t>(style.dashCount));
    if (!used.empty()) {
        const bool drawable = std::ranges::all_of(used, [](auto length) { return length >= 0; }) &&
                              std::ranges::any_of(used, [](auto length) { return length > 0; });
        if (!drawable || stretch == 1) {
            writeNumbersAttribute(out, drawable ? "stroke-dasharray" : "data-stroke-dasharray",
                                  used);
        } else {
            writeStretched(out, "stroke-dasharray", used, stretch);
        }
    }
    if (style.dashPhase != 0) {
        writeLength(out, "stroke-dashoffset", style.dashPhase, stretch);
    }
}

void writeJoin(TextOutput& out, const PathStyle& style) {
    if (style.cap != defaultStyle.cap) {
        writePlainAttribute(out, "stroke-linecap", style.cap == 1 ? "round" : "square");
    }
    if (style.join != defaultStyle.join) {
        writePlainAttribute(out, "stroke-linejoin", style.join == 1 ? "round" : "bevel");
    }
    if (style.miterLimit != defaultStyle.miterLimit) {
        writeNumberAttribute(out, "stroke-miterlimit", std::max(style.miterLimit, fixedOne));
        if (style.miterLimit < fixedOne) {
            writeNumberAttribute(out, "data-stroke-miterlimit", style.miterLimit);
        }
    }
}

void writeStroke(TextOutput& out, const PathStyle& style, const PaintServers& servers,
                 double stretch) {
    if (style.strokePaint == 0) {
        return;
    }
    writePaint(out, strokeNames, style.stroke, {servers, drawnPen(style)}, false);
    writeWidth(out, style, stretch);
    writeDash(out, style, stretch);
    writeJoin(out, style);
}

void writeRule(TextOutput& out, std::string_view name, FillRule rule) {
    if (rule == FillRule::evenOdd) {
        writePlainAttribute(out, name, "evenodd");
    }
}

void writeResolution(TextOutput& out, const PathStyle& style) {
    if (style.resolution != defaultStyle.resolution) {
        writeNumberAttribute(out, "data-resolution", style.resolution);
    }
}

} // namespace

std::int64_t visibleWidth(const PathStyle& style) {
    return style.lineWidth == 0 ? fixedOne / 4 : std::abs(std::int64_t{style.lineWidth});
}

Pen drawnPen(const PathStyle& style) {
    return style.strokePaint != 0 ? style.pen : Pen();
}

void writePaintedStyle(TextOutput& out, const PathStyle& style, const PaintServers& servers,
                       double stretch) {
    if (style.fillPaint != 0) {
        writePaint(out, fillNames, style.fill, {servers, drawnPen(style)}, true);
        writeRule(out, "fill-rule", style.rule);
    } else {
        writePlainAttribute(out, "fill", "none");
    }
    writeStroke(out, style, servers, stretch);
    writeResolution(out, style);
}

void writeGuideStyle(TextOutput& out) {
    writePlainAttribute(out, "fill", "none");
    writePlainAttribute(out, "data-guide", "true");
}

void writeClipStyle(TextOutput& out, const PathStyle& style, const PaintServers& servers) {
    writeRule(out, "clip-rule", style.rule);
    if (style.fillPaint != 0) {
        writePaint(out, fillNames, style.fill, {servers, drawnPen(style)}, false);
    }
    writeStroke(out, style, servers, 1);
    writeResolution(out, style);
}

} // namespace corvane
