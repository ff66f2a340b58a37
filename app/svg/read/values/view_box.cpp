#include "app/svg/read/values/view_box.h"

#include "app/svg/read/values/number.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// A value of `preserveAspectRatio`.
struct Aspect {
    bool stretches = false;
    bool slices = false;
    double shareX = .5; ///< of the room that is left over: how much of it lies before the box
    double shareY = .5;
};

/// "Min", "Mid" or "Max".
std::optional<double> takeShare(std::string_view& word, char axis) {
    constexpr std::size_t length = 4;
    const std::string_view place = word.substr(0, length);
    if (place.size() < length || place.front() != axis) {
        return std::nullopt;
    }
    word.remove_prefix(length);
    if (place.ends_with("Min") || place.ends_with("Max")) {
        return place.ends_with("Min") ? 0 : 1;
    }
    return place.ends_with("Mid") ? std::optional(.5) : std::nullopt;
}

Aspect parseAspect(std::string_view text) {
    TextCursor cursor(text);
    const auto takeWord = [&] {
        cursor.skipBlanks();
        return cursor.takeLetters();
    };
    std::string_view align = takeWord();
    align = align == "defer" ? takeWord() : align;
    const std::string_view fit = takeWord();
    cursor.skipBlanks();
    Aspect aspect;
    aspect.stretches = align == "none";
    aspect.slices = fit == "slice";
    if (!aspect.stretches) {
        const auto x = takeShare(align, 'x');
        const auto y = takeShare(align, 'Y');
        if (!x || !y || !align.empty()) {
            return {};
        }
        aspect.shareX = *x;
        aspect.shareY = *y;
    }
    const bool isRight = cursor.atEnd() && (fit.empty() || aspect.slices || fit == "meet");
    return isRight ? aspect : Aspect();
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
    const Aspect fit = parseAspect(aspect);
    double scaleX = area.width / box.width;
    double scaleY = area.height / box.height;
    if (!fit.stretches) {
        scaleX = fit.slices ? std::max(scaleX, scaleY) : std::min(scaleX, scaleY);
        scaleY = scaleX;
    }
    const double spareX = area.width - box.width * scaleX;
    const double spareY = area.height - box.height * scaleY;
    return {scaleX,
            0,
            0,
            scaleY,
            area.x - box.x * scaleX + spareX * fit.shareX,
            area.y - box.y * scaleY + spareY * fit.shareY};
}

bool slices(std::string_view aspect) {
    const Aspect fit = parseAspect(aspect);
    return fit.slices && !fit.stretches;
}

bool stretches(std::string_view aspect) {
    return parseAspect(aspect).stretches;
}

} // namespace corvane
