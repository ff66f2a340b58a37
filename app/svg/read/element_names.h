// The elements that are read, and those that are counted by name.
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
    text,
    tspan,
    // Counted: the artwork cannot hold them.
    textPath,
    tref,
    altGlyph,
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

/// The name in counts of an element that the artwork cannot hold; empty for elements that are read
/// or that paint nothing by themselves.
std::string_view ignoredKind(Element element);

} // namespace corvane
