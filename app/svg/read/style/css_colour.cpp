#include "app/svg/read/style/css_colour.h"

#include "app/svg/read/style/colour_names.h"
#include "app/svg/read/values/number.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace corvane {

namespace {

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    for (char& c : small) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return small;
}

int digitOf(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    const char small = static_cast<char>(c | 0x20);
    return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

std::uint8_t byteOf(double level) {
    // What is no number counts as none.
    return level > 0 ? static_cast<std::uint8_t>(std::lround(std::min(level, 1.0) * 255)) : 0;
}

/// "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", from behind the "#".
std::optional<CssColour> parseHex(std::string_view text) {
    std::array<int, 8> digits{};
    std::size_t count = 0;
    while (count < text.size() && count < digits.size() && digitOf(text[count]) >= 0) {
        digits[count] = digitOf(text[count]);
        ++count;
    }
    if (count < text.size() && !isBlank(text[count])) {
        return std::nullopt;
    }
    const auto byte = [&](std::size_t i) {
        const int value = count < 6 ? digits[i] * 17 : digits[2 * i] * 16 + digits[2 * i + 1];
        return static_cast<std::uint8_t>(value);
    };
    if (count != 3 && count != 4 && count != 6 && count != 8) {
        return std::nullopt;
    }
    return CssColour{{byte(0), byte(1), byte(2)}, count % 4 == 0 ? byte(3) / 255.0 : 1};
}

/// One primary of a hue (CSS Color 3, 4.2.4); `third` is where it lies on a circle of 6.
double hueLevel(double low, double high, double third) {
    third = std::fmod(third, 6) + (third < 0 ? 6 : 0);
    if (third < 1) {
        return low + (high - low) * third;
    }
    if (third < 3) {
        return high;
    }
    return third < 4 ? low + (high - low) * (4 - third) : low;
}

ScreenColour fromHue(double degrees, double saturation, double lightness) {
    saturation = std::clamp(saturation, 0.0, 1.0);
    lightness = std::clamp(lightness, 0.0, 1.0);
    const double high = lightness <= .5 ? lightness * (saturation + 1)
                                        : lightness + saturation - lightness * saturation;
    const double low = lightness * 2 - high;
    const double place = std::fmod(degrees, 360) / 60;
    return {byteOf(hueLevel(low, high, place + 2)), byteOf(hueLevel(low, high, place)),
            byteOf(hueLevel(low, high, place - 2))};
}

/// "r, g, b" or "h, s, l", perhaps with an alpha, up to the parenthesis.
std::optional<CssColour> parseComponents(TextCursor& cursor, bool hue) {
    std::array<double, 4> values{0, 0, 0, 1};
    std::size_t count = 0;
    while (count < values.size()) {
        cursor.skipSeparator();
        if (cursor.take('/')) {
            cursor.skipBlanks();
        }
        double number = 0;
        if (!cursor.number(number)) {
            break;
        }
        if (cursor.take('%')) {
            values[count] = number / 100;
        } else {
            cursor.takeLetters(); // "deg"
            values[count] = hue || count == 3 ? number : number / 255;
        }
        ++count;
    }
    cursor.skipBlanks();
    if (count < 3 || !cursor.take(')')) {
        return std::nullopt;
    }
    const ScreenColour screen =
        hue ? fromHue(values[0], values[1], values[2])
            : ScreenColour{byteOf(values[0]), byteOf(values[1]), byteOf(values[2])};
    return CssColour{screen, std::clamp(values[3], 0.0, 1.0)};
}

} // namespace

std::optional<CssColour> parseColour(std::string_view text) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    if (cursor.take('#')) {
        return parseHex(cursor.rest());
    }
    const std::string name = inSmallLetters(cursor.takeLetters());
    if (cursor.take('(')) {
        if (name == "rgb" || name == "rgba") {
            return parseComponents(cursor, false);
        }
        return name == "hsl" || name == "hsla" ? parseComponents(cursor, true) : std::nullopt;
    }
    if (name == "transparent") {
        return CssColour{{}, 0};
    }
    const std::optional<ScreenColour> named = colourByName(name);
    return named ? std::optional(CssColour{*named, 1}) : std::nullopt;
}

} // namespace corvane
