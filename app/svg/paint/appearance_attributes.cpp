#include "app/svg/paint/appearance_attributes.h"

#include "app/svg/markup.h"

#include <algorithm>
#include <array>
#include <string>

namespace corvane {

namespace {

/// In the order of `BlendMode`.
constexpr std::array<std::string_view, 16> blendNames{
    "normal",      "multiply",   "screen",     "overlay",    "darken",     "lighten",
    "color-dodge", "color-burn", "hard-light", "soft-light", "difference", "exclusion",
    "hue",         "saturation", "color",      "luminosity"};

struct OverprintWord {
    std::string_view name;
    bool Overprint::*part;
};
constexpr std::array overprintWords{OverprintWord{"fill", &Overprint::fills},
                                    OverprintWord{"stroke", &Overprint::strokes},
                                    OverprintWord{"skip-zeros", &Overprint::skipsZeros}};

/// In the order of `RenderingIntent`.
constexpr std::array<std::string_view, 4> intentNames{
    "relative-colorimetric", "absolute-colorimetric", "perceptual", "saturation"};

void writeOpacity(TextOutput& out, std::string_view name, double opacity) {
    if (opacity != 1) {
        writeDoubleAttribute(out, name, opacity);
    }
}

} // namespace

void writeAppearance(TextOutput& out, const Appearance& appearance, std::string_view mask) {
    writeOpacity(out, "opacity", appearance.opacity);
    std::string style;
    if (appearance.blend != BlendMode::normal) {
        style = "mix-blend-mode:";
        style += blendNames[static_cast<std::size_t>(appearance.blend)];
    }
    if (appearance.isIsolated) {
        style += style.empty() ? "isolation:isolate" : ";isolation:isolate";
    }
    if (!style.empty()) {
        writePlainAttribute(out, "style", style);
    }
    if (!mask.empty()) {
        writePlainAttribute(out, "mask", "url(#" + std::string(mask) + ")");
    }
    if (appearance.isKnockout) {
        writePlainAttribute(out, "data-knockout", "true");
    }
    std::string overprint;
    for (const OverprintWord& word : overprintWords) {
        if (appearance.overprint.*word.part) {
            overprint += overprint.empty() ? "" : " ";
            overprint += word.name;
        }
    }
    if (!overprint.empty()) {
        writePlainAttribute(out, "data-overprint", overprint);
    }
    if (appearance.intent != RenderingIntent::relativeColorimetric) {
        writePlainAttribute(out, "data-intent",
                            intentNames[static_cast<std::size_t>(appearance.intent)]);
    }
}

RenderingIntent parseIntent(std::string_view text) {
    const auto* const found = std::ranges::find(intentNames, text);
    return found == intentNames.end() ? RenderingIntent::relativeColorimetric
                                      : static_cast<RenderingIntent>(found - intentNames.begin());
}

Overprint parseOverprint(std::string_view text) {
    Overprint overprint;
    for (std::size_t end = 0; !text.empty(); text.remove_prefix(end)) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        end = std::min(text.find(' '), text.size());
        const auto* const found =
            std::ranges::find(overprintWords, text.substr(0, end), &OverprintWord::name);
        if (found != overprintWords.end()) {
            overprint.*found->part = true;
        }
    }
    return overprint;
}

void writePaintOpacities(TextOutput& out, const PathStyle& style, double fill, double stroke) {
    writeOpacity(out, "fill-opacity", style.fillPaint != 0 ? fill : 1);
    writeOpacity(out, "stroke-opacity", style.strokePaint != 0 ? stroke : 1);
}

std::optional<BlendMode> blendModeByName(std::string_view name) {
    const auto* const found = std::ranges::find(blendNames, name);
    return found == blendNames.end()
               ? std::nullopt
               : std::optional(static_cast<BlendMode>(found - blendNames.begin()));
}

} // namespace corvane
