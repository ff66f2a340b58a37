#include "app/svg/style.h"

#include "app/svg/colour.h"
#include "app/svg/markup.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

namespace {

/// What SVG and the artwork have in common as defaults.
const PathStyle defaultStyle;

/// The names of one paint's attributes.
struct PaintNames {
    std::string_view paint;
    std::string_view gray;
    std::string_view rgb;
    std::string_view cmyk;
    std::string_view origin;
};
constexpr PaintNames fillNames{"fill", "data-fill-gray", "data-fill-rgb", "data-fill-cmyk",
                               "data-fill-origin"};
constexpr PaintNames strokeNames{"stroke", "data-stroke-gray", "data-stroke-rgb",
                                 "data-stroke-cmyk", "data-stroke-origin"};

std::array<char, 7> hexText(ScreenColour colour) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::array<char, 7> text{'#'};
    std::size_t at = 1;
    for (const std::uint8_t byte : {colour.red, colour.green, colour.blue}) {
        text[at++] = digits[byte >> 4];
        text[at++] = digits[byte & 15];
    }
    return text;
}

void writeList(TextOutput& out, std::string_view name, std::span<const std::int64_t> values) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i != 0) {
            out.text(" ");
        }
        out.number(values[i]);
    }
    out.text("\"");
}

bool sameColour(const Colour& left, const Colour& right) {
    if (left.kind == ColourKind::gray || right.kind == ColourKind::gray) {
        return left.kind == right.kind && left.component[0] == right.component[0];
    }
    return left == right;
}

/// The amounts and levels that the visible colour does not tell exactly.
void writeExactColour(TextOutput& out, const PaintNames& names, const Colour& colour,
                      ScreenColour visible) {
    if (sameColour(colour, plainColour(visible))) {
        return;
    }
    if (colour.kind == ColourKind::gray) {
        writeNumberAttribute(out, names.gray, std::int64_t{fixedOne} - colour.component[0]);
        return;
    }
    if (colour.origin == ColourOrigin::fromRgb) {
        const LightLevels levels = lightLevels(colour);
        if (sameColour(processColour(levels), colour)) {
            writeList(out, names.rgb, std::array{levels.red, levels.green, levels.blue});
            return;
        }
        writePlainAttribute(out, names.origin, "rgb");
    }
    std::array<std::int64_t, 4> amounts{};
    std::copy(std::begin(colour.component), std::end(colour.component), amounts.begin());
    writeList(out, names.cmyk, amounts);
}

void writeColour(TextOutput& out, const PaintNames& names, const Colour& colour, bool isDefault) {
    const ScreenColour visible = screenColour(colour);
    if (!isDefault || visible != ScreenColour{}) {
        const std::array<char, 7> hex = hexText(visible);
        writePlainAttribute(out, names.paint, {hex.data(), hex.size()});
    }
    writeExactColour(out, names, colour, visible);
}

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
        writeList(out, drawable ? "stroke-dasharray" : "data-stroke-dasharray", used);
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

void writeStroke(TextOutput& out, const PathStyle& style) {
    if (style.strokePaint == 0) {
        return;
    }
    writeColour(out, strokeNames, style.stroke, false);
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

void writePaintedStyle(TextOutput& out, const PathStyle& style) {
    if (style.fillPaint != 0) {
        writeColour(out, fillNames, style.fill, true);
        writeRule(out, "fill-rule", style.rule);
    } else {
        writePlainAttribute(out, "fill", "none");
    }
    writeStroke(out, style);
    writeResolution(out, style);
}

void writeGuideStyle(TextOutput& out) {
    writePlainAttribute(out, "fill", "none");
    writePlainAttribute(out, "data-guide", "true");
}

void writeClipStyle(TextOutput& out, const PathStyle& style) {
    writeRule(out, "clip-rule", style.rule);
    if (style.fillPaint != 0) {
        writeColour(out, fillNames, style.fill, false);
    }
    writeStroke(out, style);
    writeResolution(out, style);
}

} // namespace corvane
