#include "app/svg/read/values/transform.h"

#include "app/svg/read/values/number.h"
#include "host/matrix.h"

#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace corvane {

namespace {

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

} // namespace

RealMatrix rotation(double degrees) {
    const double turn = std::remainder(degrees, 360);
    if (std::remainder(turn, 90) == 0) {
        constexpr std::array<double, 4> sines{0, 1, 0, -1};
        const auto quarter = static_cast<std::size_t>(std::lround(turn / 90) + 4);
        const double sine = sines[quarter % 4];
        const double cosine = sines[(quarter + 1) % 4];
        return {cosine, sine, -sine, cosine, 0, 0};
    }
    const double sine = std::sin(radians(turn));
    const double cosine = std::cos(radians(turn));
    return {cosine, sine, -sine, cosine, 0, 0};
}

namespace {

std::optional<RealMatrix> transformOf(std::string_view name, std::span<const double> n) {
    const auto counts = [&](std::size_t least, std::size_t most) {
        return n.size() == least || n.size() == most;
    };
    if (name == "matrix" && n.size() == 6) {
        return RealMatrix{n[0], n[1], n[2], n[3], n[4], n[5]};
    }
    if (name == "translate" && counts(1, 2)) {
        return RealMatrix{1, 0, 0, 1, n[0], n.size() == 2 ? n[1] : 0};
    }
    if (name == "scale" && counts(1, 2)) {
        return RealMatrix{n[0], 0, 0, n.size() == 2 ? n[1] : n[0], 0, 0};
    }
    if (name == "rotate" && counts(1, 3)) {
        const RealMatrix turned = rotation(n[0]);
        if (n.size() == 1) {
            return turned;
        }
        return multiply(multiply({1, 0, 0, 1, -n[1], -n[2]}, turned), {1, 0, 0, 1, n[1], n[2]});
    }
    if (name == "skewX" && n.size() == 1) {
        return RealMatrix{1, 0, std::tan(radians(n[0])), 1, 0, 0};
    }
    if (name == "skewY" && n.size() == 1) {
        return RealMatrix{1, std::tan(radians(n[0])), 0, 1, 0, 0};
    }
    return std::nullopt;
}

std::optional<RealMatrix> takeTransform(TextCursor& cursor) {
    const std::string_view name = cursor.takeLetters();
    cursor.skipBlanks();
    if (!cursor.take('(')) {
        return std::nullopt;
    }
    std::array<double, 6> numbers{};
    std::size_t count = 0;
    cursor.skipBlanks();
    while (count < numbers.size() && cursor.number(numbers[count])) {
        ++count;
        cursor.skipSeparator();
    }
    if (!cursor.take(')')) {
        return std::nullopt;
    }
    return transformOf(name, std::span(numbers).first(count));
}

} // namespace

std::optional<RealMatrix> parseTransform(std::string_view text) {
    RealMatrix all;
    TextCursor cursor(text);
    cursor.skipBlanks();
    if (cursor.rest() == "none") {
        return all;
    }
    while (!cursor.atEnd()) {
        const std::optional<RealMatrix> next = takeTransform(cursor);
        if (!next) {
            return std::nullopt;
        }
        all = multiply(*next, all);
        cursor.skipSeparator();
    }
    return all;
}

} // namespace corvane
