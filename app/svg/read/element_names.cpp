#include "app/svg/read/element_names.h"

#include "app/svg/read/style/name_table.h"

namespace corvane {

namespace {

constexpr auto elementCount = static_cast<std::size_t>(Element::unknown);

/// In the order of `Element`.
constexpr std::array<std::string_view, elementCount> names{
    "svg",
    "g",
    "a",
    "switch",
    "use",
    "symbol",
    "defs",
    "path",
    "rect",
    "circle",
    "ellipse",
    "line",
    "polyline",
    "polygon",
    "clipPath",
    "linearGradient",
    "radialGradient",
    "pattern",
    "stop",
    "style",
    "title",
    "desc",
    "metadata",
    "text",
    "tspan",
    "textPath",
    "tref",
    "altGlyph",
    "image",
    "filter",
    "mask",
    "marker",
    "foreignObject",
    "script",
    "animate",
    "animateTransform",
    "animateMotion",
    "animateColor",
    "set",
    "font",
    "video",
    "audio",
    "iframe",
    "canvas",
    "cursor",
    "view",
    "meshgradient",
    "hatch",
    "solidColor",
    "flowRoot",
};

constexpr NameTable<128> table(names);

} // namespace

Element elementByName(std::string_view name) {
    return static_cast<Element>(table.find(name, elementCount));
}

std::string_view ignoredKind(Element element) {
    switch (element) {
    case Element::unknown:
        return "unknown element";
    case Element::animateTransform:
    case Element::animateMotion:
    case Element::animateColor:
    case Element::set:
        return "animate";
    case Element::view:
    case Element::cursor:
    case Element::filter: // this one and those below are counted where they are used
    case Element::mask:
    case Element::marker:
        return {};
    default:
        return element >= Element::textPath ? names[static_cast<std::size_t>(element)]
                                            : std::string_view{};
    }
}

} // namespace corvane
