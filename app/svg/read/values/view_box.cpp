#include "app/svg/read/values/view_box.h"

#include "app/svg/read/values/number.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// How much of the room that is left over lies before the box.
double share(std::string_view aspect, std::string_view least, std::string_view most) {
    if (aspect.find(least) != std::string_view::npos) {
        return 0;
    }
    return aspect.find(most) != std::string_view::npos ? 1 : .5;
}

} // namespace

std::optional<ViewBox> parseViewBox(std::string_view text) {
    TextCursor cursor(text);
    std::array<double, 4> numbers{};
    for (double& number : numbers) {
        cursor.skipSeparator();
        if (!cursor.number(number)) {
            return std::nullopt;
        }
    }
    cursor.skipBlanks();
    if (!cursor.atEnd() || numbers[2] < 0 || numbers[3] < 0) {
        return std::nullopt;
    }
    return ViewBox{numbers[0], numbers[1], numbers[2], numbers[3]};
}

RealMatrix viewBoxMatrix(const ViewBox& box, const ViewBox& area, std::string_view aspect) {
    double scaleX = area.width / box.width;
    double scaleY = area.height / box.height;
    if (aspect.find("none") == std::string_view::npos) {
        scaleX = slices(aspect) ? std::max(scaleX, scaleY) : std::min(scaleX, scaleY);
        scaleY = scaleX;
    }
    const double spareX = area.width - box.width * scaleX;
    const double spareY = area.height - box.height * scaleY;
    return {scaleX,
            0,
            0,
            scaleY,
            area.x - box.x * scaleX + spareX * share(aspect, "xMin", "xMax"),
            area.y - box.y * scaleY + spareY * share(aspect, "YMin", "YMax")};
}

bool slices(std::string_view aspect) {
    return aspect.find("slice") != std::string_view::npos;
}

} // namespace corvane
