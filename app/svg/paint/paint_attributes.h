// A paint as an attribute, with data- attributes for what that cannot say.
#pragma once

#include "app/svg/paint/paint_servers.h"
#include "app/svg/sink.h"
#include "host/artwork.h"

#include <string_view>

namespace corvane {

/// The names of one paint's attributes.
struct PaintNames {
    std::string_view paint;
    std::string_view gray;
    std::string_view rgb;
    std::string_view cmyk;
    std::string_view origin;
    std::string_view spot;
    std::string_view tint;
    std::string_view inks;
};
inline constexpr PaintNames fillNames{"fill",           "data-fill-gray",   "data-fill-rgb",
                                      "data-fill-cmyk", "data-fill-origin", "data-fill-spot",
                                      "data-fill-tint", "data-fill-inks"};
inline constexpr PaintNames strokeNames{
    "stroke",           "data-stroke-gray",   "data-stroke-rgb",
    "data-stroke-cmyk", "data-stroke-origin", "data-stroke-spot",
    "data-stroke-tint", "data-stroke-inks"};
inline constexpr PaintNames stopNames{"stop-color",
                                      "data-stop-gray",
                                      "data-stop-rgb",
                                      "data-stop-cmyk",
                                      "data-stop-origin",
                                      {},
                                      {},
                                      {}};

/// The gradients and patterns of an element that a pen transforms.
struct ElementServers {
    const PaintServers& servers;
    Pen pen = {};
};

/// Writes a paint of any kind; its source must be written before. `blackIsDefault`: the visible
/// colour is left out where it is black.
void writePaint(TextOutput&, const PaintNames&, const Colour&, const ElementServers&,
                bool blackIsDefault);
/// The same for gray and process colours only.
void writeColour(TextOutput&, const PaintNames&, const Colour&, bool blackIsDefault);

} // namespace corvane
