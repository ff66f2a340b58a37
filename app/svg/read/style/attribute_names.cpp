#include "app/svg/read/style/attribute_names.h"

#include "app/svg/read/style/name_table.h"

#include <algorithm>
#include <string>
#include <utility>

namespace corvane {

namespace {

/// In the order of `Attribute`.
constexpr std::array<std::string_view, attributeCount> names{
    "fill",
    "stroke",
    "color",
    "fill-opacity",
    "stroke-opacity",
    "opacity",
    "stroke-width",
    "stroke-dasharray",
    "stroke-dashoffset",
    "stroke-linecap",
    "stroke-linejoin",
    "stroke-miterlimit",
    "fill-rule",
    "clip-rule",
    "visibility",
    "display",
    "font-size",
    "font",
    "font-family",
    "font-style",
    "font-variant",
    "font-weight",
    "letter-spacing",
    "word-spacing",
    "text-anchor",
    "text-decoration",
    "text-decoration-line",
    "text-decoration-style",
    "text-decoration-color",
    "text-decoration-thickness",
    "writing-mode",
    "baseline-shift",
    "white-space",
    "direction",
    "unicode-bidi",
    "dominant-baseline",
    "alignment-baseline",
    "font-stretch",
    "font-variant-caps",
    "font-variant-ligatures",
    "font-variant-numeric",
    "font-variant-position",
    "font-variant-alternates",
    "font-variant-east-asian",
    "font-feature-settings",
    "font-variation-settings",
    "font-kerning",
    "font-size-adjust",
    "text-transform",
    "text-orientation",
    "shape-inside",
    "inline-size",
    "overflow",
    "clip-path",
    "stop-color",
    "stop-opacity",
    "filter",
    "mask",
    "mask-type",
    "marker",
    "marker-start",
    "marker-mid",
    "marker-end",
    "mix-blend-mode",
    "isolation",
    "paint-order",
    "vector-effect",
    "color-interpolation",
    "transform",
    "transform-origin",
    "transform-box",
    "background",
    "background-color",
    "image-rendering",
    "image-orientation",
    "id",
    "xml:space",
    "dx",
    "dy",
    "rotate",
    "textLength",
    "lengthAdjust",
    "startOffset",
    "side",
    "pathLength",
    "path",
    "class",
    "style",
    "x",
    "y",
    "width",
    "height",
    "rx",
    "ry",
    "cx",
    "cy",
    "r",
    "x1",
    "y1",
    "x2",
    "y2",
    "points",
    "d",
    "href",
    "viewBox",
    "refX",
    "refY",
    "markerWidth",
    "markerHeight",
    "markerUnits",
    "orient",
    "preserveAspectRatio",
    "clipPathUnits",
    "maskUnits",
    "maskContentUnits",
    "gradientUnits",
    "gradientTransform",
    "spreadMethod",
    "fx",
    "fy",
    "fr",
    "offset",
    "patternUnits",
    "patternContentUnits",
    "patternTransform",
    "inkscape:groupmode",
    "inkscape:label",
    "sodipodi:insensitive",
    "requiredExtensions",
    "systemLanguage",
    "type",
    "media",
    "data-producer",
    "data-file",
    "data-page",
    "data-object",
    "data-digest",
    "data-artwork",
    "data-media-box",
    "data-rotate",
    "data-user-unit",
    "data-omitted",
    "data-bounds",
    "data-artboard",
    "data-profile",
    "data-preview",
    "data-locked",
    "data-printing",
    "data-dimmed",
    "data-clip",
    "data-clip-rule",
    "data-clip-source",
    "data-source",
    "data-form",
    "data-layer",
    "data-layer-name",
    "data-layer-state",
    "data-annotations",
    "data-exact",
    "data-dx",
    "data-image",
    "data-epsf",
    "data-kept",
    "data-image-rendering",
    "data-compound",
    "data-column",
    "data-guide",
    "data-knockout",
    "data-backdrop",
    "data-transfer",
    "data-ground",
    "data-stroke-width",
    "data-stroke-dasharray",
    "data-stroke-miterlimit",
    "data-resolution",
    "data-fill-gray",
    "data-fill-rgb",
    "data-fill-cmyk",
    "data-fill-origin",
    "data-stroke-gray",
    "data-stroke-rgb",
    "data-stroke-cmyk",
    "data-stroke-origin",
    "data-fill-spot",
    "data-fill-tint",
    "data-stroke-spot",
    "data-stroke-tint",
    "data-stop-gray",
    "data-stop-rgb",
    "data-stop-cmyk",
    "data-stop-origin",
    "data-cell-width",
    "data-cell-height",
};

constexpr NameTable<512> table(names);

} // namespace

Attribute attributeByName(std::string_view name) {
    const std::size_t colon = name.find(':');
    if (colon != std::string_view::npos && name.substr(colon + 1) == "href") {
        return Attribute::href;
    }
    return static_cast<Attribute>(table.find(name, attributeCount));
}

Attribute propertyByName(std::string_view name) {
    const Attribute known = attributeByName(name);
    const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (known != Attribute::unknown || std::ranges::none_of(name, isCapital)) {
        return known;
    }
    std::string small(name);
    for (char& c : small) {
        c = isCapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return attributeByName(small);
}

std::string_view unreadProperty(std::string_view name) {
    constexpr auto unread = std::to_array<std::pair<std::string_view, std::string_view>>({
        {"rotate", "transform"},
        {"scale", "transform"},
        {"translate", "transform"},
        {"offset-path", "transform"},
        {"zoom", "transform"},
        {"all", "all"},
        {"text-shadow", "text-shadow"},
        {"background-image", "background"},
        {"mask-image", "mask"},
        {"-webkit-mask", "mask"},
        {"backdrop-filter", "filter"},
    });
    const auto found =
        std::ranges::find(unread, name, &std::pair<std::string_view, std::string_view>::first);
    return found == unread.end() ? std::string_view{} : found->second;
}

} // namespace corvane
