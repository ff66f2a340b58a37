#include "app/svg/style.h"

#include "app/svg/markup.h"
#include "app/svg/paint_attributes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// What SVG and the artwork have in common as defaults.
const PathStyle defaultStyle;

void writeWidth(TextOutput& out, const PathStyle& style) {
    if (style.lineWidth != fixedOne) {
        writeNumberAttribute(out, "stroke-width", visibleWidth(style));
    }
    if (style.lineWidth <= 0) {
        writeNumberAttribute(out, "data-stroke-width", style.lineWidth);
    }
}

/// SVG has no negative dashes, and a pattern without length is a line without dashes in both.
void writeDash(TextOutput& out, const PathStyle& style) {
    std::array<std::int64_t, 6> dash{};
    std::copy(std::begin(style.dash), std::end(style.dash), dash.begin());
    const std::span<const std::int64_t> used(dash.data(),
                                             static_cast<std::size_t>(style.dashCount));
    if (!used.empty()) {
        const bool drawable = std::ranges::all_of(used, [](auto length) { return length >= 0; }) &&
                              std::ranges::any_of(used, [](auto length) { return length > 0; });
        writeNumbersAttribute(out, drawable ? "stroke-dasharray" : "data-stroke-dasharray", used);
    }
    if (style.dashPhase != 0) {
        writeNumberAttribute(out, "stroke-dashoffset", style.dashPhase);
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

void writeStroke(TextOutput& out, const PathStyle& style, const PaintServers& servers) {
    if (style.strokePaint == 0) {
        return;
    }
    writePaint(out, strokeNames, style.stroke, servers, false);
    writeWidth(out, style);
    writeDash(out, style);
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

void writePaintedStyle(TextOutput& out, const PathStyle& style, const PaintServers& servers) {
    if (style.fillPaint != 0) {
        writePaint(out, fillNames, style.fill, servers, true);
        writeRule(out, "fill-rule", style.rule);
    } else {
        writePlainAttribute(out, "fill", "none");
    }
    writeStroke(out, style, servers);
    writeResolution(out, style);
}

void writeGuideStyle(TextOutput& out) {
    writePlainAttribute(out, "fill", "none");
    writePlainAttribute(out, "data-guide", "true");
}

void writeClipStyle(TextOutput& out, const PathStyle& style, const PaintServers& servers) {
    writeRule(out, "clip-rule", style.rule);
    if (style.fillPaint != 0) {
        writePaint(out, fillNames, style.fill, servers, false);
    }
    writeStroke(out, style, servers);
    writeResolution(out, style);
}

} // namespace corvane
