#include "app/svg/read/style/text_style.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace corvane {

namespace {

double parseSpacing(std::string_view text, const LengthContext& lengths) {
    return text == "normal" ? 0 : parseLength(text, Axis::other, lengths).value_or(0);
}

double parseBaselineShift(std::string_view text, const LengthContext& lengths) {
    // Where fonts set letters below and above the line, in ems, is seldom far from this.
    constexpr double below = -0.2;
    constexpr double above = 0.33;
    if (text == "sub" || text == "super") {
        return (text == "sub" ? below : above) * lengths.fontSize;
    }
    LengthContext ofFont = lengths;
    ofFont.viewport = {lengths.fontSize, lengths.fontSize};
    return parseLength(text, Axis::x, ofFont).value_or(0);
}

/// How far above the line's own baseline another one is, in ems. Fonts differ by a twentieth or so.
std::optional<double> heightOfBaseline(std::string_view name) {
    constexpr auto heights =
        std::to_array<std::pair<std::string_view, double>>({{"auto", 0},
                                                            {"alphabetic", 0},
                                                            {"baseline", 0},
                                                            {"middle", .25},
                                                            {"central", .34},
                                                            {"mathematical", .45},
                                                            {"hanging", .72},
                                                            {"text-before-edge", .9},
                                                            {"text-top", .9},
                                                            {"text-after-edge", -.22},
                                                            {"text-bottom", -.22},
                                                            {"ideographic", -.22}});
    for (const auto& [known, height] : heights) {
        if (known == name) {
            return height;
        }
    }
    return std::nullopt;
}

void readDirection(ComputedStyle& style, const Declared& declared) {
    if (const auto text = valueOf(declared, Attribute::direction); !text.empty()) {
        style.rightToLeft = text == "rtl";
    }
    if (const auto text = valueOf(declared, Attribute::unicodeBidi); !text.empty()) {
        style.bidi = text == "normal" || text == "plaintext" ? Bidi::none
                     : text.ends_with("override")            ? Bidi::overridden
                                                             : Bidi::embedded;
    }
    if (const auto text = valueOf(declared, Attribute::writingMode); !text.empty()) {
        style.vertical = text.starts_with("tb") || text.starts_with("vertical");
    }
    if (const auto text = valueOf(declared, Attribute::textOrientation); !text.empty()) {
        style.upright = text == "upright";
    }
}

void readBaseline(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                  Tally& tally) {
    if (const auto text = valueOf(declared, Attribute::baselineShift); !text.empty()) {
        style.baselineShift = parseBaselineShift(text, lengths);
    }
    if (const auto text = valueOf(declared, Attribute::dominantBaseline); !text.empty()) {
        const auto height = heightOfBaseline(text);
        style.baseline = height.value_or(style.baseline);
        if (!height) {
            tally.add("dominant-baseline");
        }
    }
}

void countIgnored(const Declared& declared, Tally& tally) {
    struct Ignored {
        Attribute property;
        std::string_view kind;
        std::array<std::string_view, 4> harmless;
    };
    constexpr auto ignored = std::to_array<Ignored>({
        {Attribute::alignmentBaseline,
         "alignment-baseline",
         {"auto", "baseline", "alphabetic", "use-script"}},
        {Attribute::fontFeatureSettings, "font-feature-settings", {"normal"}},
        {Attribute::fontKerning, "font-kerning", {"auto", "normal"}},
        {Attribute::fontSizeAdjust, "font-size-adjust", {"none"}},
        {Attribute::fontStretch, "font-stretch", {"normal", "100%"}},
        {Attribute::fontVariant, "font-variant", {"normal", "none"}},
        {Attribute::fontVariantAlternates, "font-variant", {"normal"}},
        {Attribute::fontVariantCaps, "font-variant", {"normal"}},
        {Attribute::fontVariantEastAsian, "font-variant", {"normal"}},
        {Attribute::fontVariantLigatures, "font-variant", {"normal", "common-ligatures"}},
        {Attribute::fontVariantNumeric, "font-variant", {"normal"}},
        {Attribute::fontVariantPosition, "font-variant", {"normal"}},
        {Attribute::fontVariationSettings, "font-variation-settings", {"normal"}},
        {Attribute::textTransform,
         "text-transform",
         {"none", "uppercase", "lowercase", "capitalize"}},
    });
    for (const Ignored& entry : ignored) {
        const std::string_view text = valueOf(declared, entry.property);
        // Editors write lists that begin so: "none solid rgb(0, 0, 0)".
        const std::string_view first = text.substr(0, text.find(' '));
        if (!text.empty() && std::ranges::find(entry.harmless, first) == entry.harmless.end()) {
            tally.add(entry.kind);
        }
    }
}

} // namespace

void readTextStyle(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                   Tally& tally) {
    if (const auto text = valueOf(declared, Attribute::letterSpacing); !text.empty()) {
        style.letterSpacing = parseSpacing(text, lengths);
    }
    if (const auto text = valueOf(declared, Attribute::wordSpacing); !text.empty()) {
        style.wordSpacing = parseSpacing(text, lengths);
    }
    if (const auto text = valueOf(declared, Attribute::textTransform); !text.empty()) {
        style.letterCase = letterCaseOf(text);
    }
    if (const auto text = valueOf(declared, Attribute::textAnchor); !text.empty()) {
        style.anchor = text == "middle" ? TextAnchor::middle
                       : text == "end"  ? TextAnchor::end
                                        : TextAnchor::start;
    }
    if (const auto text = valueOf(declared, Attribute::whiteSpace); !text.empty()) {
        style.keepsLines = text.starts_with("pre") || text == "break-spaces";
        style.keepsBlanks = style.keepsLines && text != "pre-line";
    }
    if (const auto text = valueOf(declared, Attribute::shapeInside); !text.empty()) {
        style.flow = text == "none" || text == "auto" ? std::string_view{} : "shape-inside";
    }
    if (const auto text = valueOf(declared, Attribute::inlineSize);
        !text.empty() && parseLength(text, Axis::x, lengths).value_or(0) > 0) {
        style.flow = "inline-size";
    }
    readDirection(style, declared);
    readBaseline(style, declared, lengths, tally);
    countIgnored(declared, tally);
}

} // namespace corvane
