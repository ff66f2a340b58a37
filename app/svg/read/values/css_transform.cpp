// Transforms as CSS writes them.
#include "app/svg/read/values/number.h"
#include "app/svg/read/values/transform.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <utility>

namespace corvane {

namespace {

constexpr std::size_t mostArguments = 6;

std::string_view takeArgument(TextCursor& cursor) {
    cursor.skipSeparator();
    const std::string_view before = cursor.rest();
    while (!cursor.atEnd() && !isBlank(cursor.peek()) && cursor.peek() != ',' &&
           cursor.peek() != ')') {
        cursor.skip();
    }
    return cursor.since(before);
}

std::optional<double> parsePlainNumber(std::string_view text) {
    TextCursor cursor(text);
    double number = 0;
    if (!cursor.number(number)) {
        return std::nullopt;
    }
    number = cursor.take('%') ? number / 100 : number;
    return cursor.atEnd() ? std::optional(number) : std::nullopt;
}

std::optional<double> parseDistance(std::string_view text, Axis axis, const LengthContext& lengths,
                                    bool hasUnits) {
    const auto plain = text.ends_with('%') ? std::nullopt : parsePlainNumber(text);
    return plain && *plain != 0 && hasUnits ? std::nullopt : parseLength(text, axis, lengths);
}

std::optional<RealMatrix> skewed(std::optional<double> alongX, std::optional<double> alongY) {
    if (!alongX || !alongY) {
        return std::nullopt;
    }
    constexpr double degree = std::numbers::pi / 180;
    return RealMatrix{1, std::tan(*alongY * degree), std::tan(*alongX * degree), 1, 0, 0};
}

/// One function with its arguments.
std::optional<RealMatrix> matrixOf(std::string_view name,
                                   std::span<const std::string_view> arguments,
                                   const LengthContext& lengths) {
    const std::size_t count = arguments.size();
    const auto distance = [&](std::size_t i, Axis axis) {
        return i < count ? parseDistance(arguments[i], axis, lengths, true) : std::optional(0.0);
    };
    const auto angle = [&](std::size_t i) {
        return i < count ? parseAngle(arguments[i], true) : std::optional(0.0);
    };
    const auto factor = [&](std::size_t i) { return parsePlainNumber(arguments[i]); };
    const auto moved = [](std::optional<double> x, std::optional<double> y) {
        return x && y ? std::optional(RealMatrix{1, 0, 0, 1, *x, *y}) : std::nullopt;
    };
    const auto scaled = [](std::optional<double> x, std::optional<double> y) {
        return x && y ? std::optional(RealMatrix{*x, 0, 0, *y, 0, 0}) : std::nullopt;
    };
    const bool isOne = count == 1;
    const bool isOneOrTwo = count == 1 || count == 2;
    if (name == "matrix" && count == mostArguments) {
        std::array<double, mostArguments> n{};
        for (std::size_t i = 0; i < count; ++i) {
            const auto number = factor(i);
            if (!number) {
                return std::nullopt;
            }
            n[i] = *number;
        }
        return RealMatrix{n[0], n[1], n[2], n[3], n[4], n[5]};
    }
    if (name == "translate" && isOneOrTwo) {
        return moved(distance(0, Axis::x), distance(1, Axis::y));
    }
    if (name == "translateX" && isOne) {
        return moved(distance(0, Axis::x), 0);
    }
    if (name == "translateY" && isOne) {
        return moved(0, distance(0, Axis::y));
    }
    if (name == "scale" && isOneOrTwo) {
        return scaled(factor(0), factor(count - 1));
    }
    if (name == "scaleX" && isOne) {
        return scaled(factor(0), 1);
    }
    if (name == "scaleY" && isOne) {
        return scaled(1, factor(0));
    }
    if (name == "rotate" && isOne) {
        const auto turn = angle(0);
        return turn ? std::optional(rotation(*turn)) : std::nullopt;
    }
    if (name == "skew" && isOneOrTwo) {
        return skewed(angle(0), angle(1));
    }
    if (name == "skewX" && isOne) {
        return skewed(angle(0), 0);
    }
    return name == "skewY" && isOne ? skewed(0, angle(0)) : std::nullopt;
}

/// A word of `transform-origin` as a part of its side.
std::optional<double> partOfSide(std::string_view word, std::string_view least,
                                 std::string_view most) {
    if (isWord(word, "center")) {
        return .5;
    }
    if (isWord(word, least)) {
        return 0;
    }
    return isWord(word, most) ? std::optional(1.0) : std::nullopt;
}

} // namespace

std::optional<double> parseAngle(std::string_view text, bool hasUnit) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    double number = 0;
    if (!cursor.number(number)) {
        return std::nullopt;
    }
    const std::string_view unit = cursor.takeLetters();
    cursor.skipBlanks();
    if (!cursor.atEnd() || (unit.empty() && hasUnit && number != 0)) {
        return std::nullopt;
    }
    constexpr auto units = std::to_array<std::pair<std::string_view, double>>(
        {{"", 1}, {"deg", 1}, {"grad", .9}, {"rad", 180 / std::numbers::pi}, {"turn", 360}});
    for (const auto& [name, degrees] : units) {
        if (isWord(unit, name)) {
            return number * degrees;
        }
    }
    return std::nullopt;
}

std::optional<RealMatrix> parseCssTransform(std::string_view text, const LengthContext& lengths) {
    RealMatrix all;
    TextCursor cursor(text);
    cursor.skipBlanks();
    if (isWord(cursor.rest(), "none")) {
        return all;
    }
    while (!cursor.atEnd()) {
        const std::string_view name = cursor.takeLetters();
        if (!cursor.take('(')) {
            return std::nullopt;
        }
        std::array<std::string_view, mostArguments> arguments;
        std::size_t count = 0;
        for (std::string_view next = takeArgument(cursor); !next.empty() && count < mostArguments;
             next = takeArgument(cursor)) {
            arguments[count++] = next;
        }
        const auto one = matrixOf(name, std::span(arguments).first(count), lengths);
        if (!cursor.take(')') || !one) {
            return std::nullopt;
        }
        all = multiply(*one, all);
        cursor.skipBlanks();
    }
    return all;
}

std::optional<RealPoint> parseTransformOrigin(std::string_view text, const LengthContext& lengths,
                                              bool hasUnits) {
    TextCursor cursor(text);
    std::string_view first = takeArgument(cursor);
    std::string_view second = takeArgument(cursor);
    const bool isTurned = isWord(first, "top") || isWord(first, "bottom") ||
                          isWord(second, "left") || isWord(second, "right");
    if (isTurned) {
        std::swap(first, second);
    }
    const auto side = [&](std::string_view word, Axis axis, std::string_view least,
                          std::string_view most) -> std::optional<double> {
        const double whole = axis == Axis::x ? lengths.viewport.width : lengths.viewport.height;
        if (word.empty()) {
            return whole / 2;
        }
        const auto part = partOfSide(word, least, most);
        return part ? *part * whole : parseDistance(word, axis, lengths, hasUnits);
    };
    const auto x = side(first, Axis::x, "left", "right");
    const auto y = side(second, Axis::y, "top", "bottom");
    return x && y ? std::optional(RealPoint{*x, *y}) : std::nullopt;
}

} // namespace corvane
