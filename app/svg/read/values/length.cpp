#include "app/svg/read/values/length.h"

#include "app/svg/read/values/number.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

struct Unit {
    std::string_view name;
    double pixels;
};
constexpr std::array<Unit, 8> units{{{"", 1},
                                     {"px", 1},
                                     {"pt", pixelsPerPoint},
                                     {"pc", 16},
                                     {"in", 96},
                                     {"mm", 96 / 25.4},
                                     {"cm", 96 / 2.54},
                                     {"q", 96 / 101.6}}};

double whole(Axis axis, const Viewport& viewport) {
    switch (axis) {
    case Axis::x:
        return viewport.width;
    case Axis::y:
        return viewport.height;
    case Axis::other:
        break;
    }
    return viewport.diagonal();
}

} // namespace

double Viewport::diagonal() const {
    return std::hypot(width, height) / std::sqrt(2.0);
}

std::optional<double> parseLength(std::string_view text, Axis axis, const LengthContext& context) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    double number = 0;
    if (!cursor.number(number)) {
        return std::nullopt;
    }
    if (cursor.take('%')) {
        cursor.skipBlanks();
        return cursor.atEnd() ? std::optional(number / 100 * whole(axis, context.viewport))
                              : std::nullopt;
    }
    const std::string_view unit = cursor.takeLetters();
    cursor.skipBlanks();
    if (!cursor.atEnd()) {
        return std::nullopt;
    }
    for (const Unit& known : units) {
        if (isWord(unit, known.name)) {
            return number * known.pixels;
        }
    }
    if (isWord(unit, "em")) {
        return number * context.fontSize;
    }
    if (isWord(unit, "rem")) {
        return number * LengthContext{}.fontSize;
    }
    if (isWord(unit, "ex")) {
        return number * context.fontSize / 2;
    }
    return std::nullopt;
}

bool isUnreadValue(std::string_view text) {
    if (text.find('(') != std::string_view::npos) {
        constexpr auto functions = std::to_array<std::string_view>(
            {"var(", "calc(", "env(", "attr(", "min(", "max(", "clamp("});
        return std::ranges::any_of(functions, [&](std::string_view function) {
            return text.find(function) != std::string_view::npos;
        });
    }
    TextCursor cursor(text);
    cursor.skipBlanks();
    double number = 0;
    if (text.empty() || !isLetter(text.back()) || !cursor.number(number)) {
        return false;
    }
    constexpr auto others = std::to_array<std::string_view>(
        {"vw", "vh", "vmin", "vmax", "vi", "vb", "ch", "ic", "cap", "lh", "rlh", "rex", "rch",
         "svw", "svh", "lvw", "lvh", "dvw", "dvh"});
    return std::ranges::any_of(others,
                               [&](std::string_view unit) { return isWord(cursor.rest(), unit); });
}

} // namespace corvane
