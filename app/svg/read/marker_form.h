// A `marker` element: how its content is laid onto a vertex (SVG 2, 13.7).
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/values/length.h"
#include "app/svg/read/values/view_box.h"
#include "host/matrix.h"

#include <optional>
#include <pugixml.hpp>

namespace corvane {

struct MarkerForm {
    enum class Turn { fixed, along, alongButBackAtTheStart };

    pugi::xml_node element;
    RealMatrix toPoint; ///< from its content to units of which 0,0 is the vertex
    ViewBox window;     ///< in the same units: beyond it nothing is seen, unless it `overflows`
    bool overflows = false;
    bool growsWithLine = true; ///< a unit is the width of the line, else one of user space
    Turn turn = Turn::fixed;
    double angle = 0; ///< in degrees, where that is fixed
    Viewport viewport;
};

/// None, and counted, where there is no such marker; none where it has no size.
std::optional<MarkerForm> readMarkerForm(std::string_view id, ReadingContext& context);

} // namespace corvane
