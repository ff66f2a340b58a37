// The elements that reading SVG knows, and those that it can say the name of.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvane {

enum class Element : std::uint8_t {
    svg,
    g,
    a,
    switchElement,
    use,
    symbol,
    defs,
    path,
    rect,
    circle,
    ellipse,
    line,
    polyline,
    polygon,
    clipPath,
    linearGradient,
    radialGradient,
    pattern,
    stop,
    style,
    title,
    desc,
    metadata,
    // Met and counted, but nothing the artwork holds.
    text,
    image,
    filter,
    mask,
    marker,
    foreignObject,
    script,
    animate,
    animateTransform,
    animateMotion,
    animateColor,
    set,
    font,
    video,
    audio,
    iframe,
    canvas,
    cursor,
    view,
    meshgradient,
    hatch,
    solidColor,
    flowRoot,
    unknown
};

/// Of a name without namespace prefix.
Element elementByName(std::string_view name);

/// How an element that the artwork cannot hold is called in counts; empty for those that are read
/// or that paint nothing by themselves.
std::string_view ignoredKind(Element element);

} // namespace corvane
