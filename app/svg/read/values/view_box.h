// The mapping of a `viewBox` onto the area that shows it (SVG 1.1, 7.7 and 7.8).
#pragma once

#include "host/matrix.h"

#include <optional>
#include <string_view>

namespace corvane {

/// In user units, y pointing down.
struct ViewBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// Four numbers, of which width and height are not negative; none where the text is not that.
std::optional<ViewBox> parseViewBox(std::string_view text);

/// Leads from the view box, which has an area, to `area`, as the value of `preserveAspectRatio`
/// says; what that does not know counts as "xMidYMid meet".
RealMatrix viewBoxMatrix(const ViewBox& box, const ViewBox& area, std::string_view aspect);

/// Whether that value lets the box reach beyond its area.
bool slices(std::string_view aspect);
/// Whether it lets the box take any form.
bool stretches(std::string_view aspect);

} // namespace corvane
