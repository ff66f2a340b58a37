#include "app/svg/read/attribute_names.h"

#include "app/svg/read/name_table.h"

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
    "overflow",
    "clip-path",
    "stop-color",
    "stop-opacity",
    "filter",
    "mask",
    "marker",
    "marker-start",
    "marker-mid",
    "marker-end",
    "mix-blend-mode",
    "paint-order",
    "vector-effect",
    "id",
    "class",
    "style",
    "transform",
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
    "preserveAspectRatio",
    "clipPathUnits",
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
    "data-producer",
    "data-file",
    "data-page",
    "data-object",
    "data-digest",
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
    "data-compound",
    "data-guide",
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

} // namespace corvane
