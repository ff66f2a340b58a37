#include "app/svg/read/style/css_colour.h"

#include "app/svg/read/style/colour_names.h"
#include "app/svg/read/values/number.h"
#include "app/svg/read/values/transform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
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
    const std::size_t count = std::min(text.size(), digits.size() + 1);
    if (count != 3 && count != 4 && count != 6 && count != 8) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < count; ++i) {
        digits[i] = digitOf(text[i]);
    }
    const auto byte = [&](std::size_t i) {
        const int value = count < 6 ? digits[i] * 17 : digits[2 * i] * 16 + digits[2 * i + 1];
        return static_cast<std::uint8_t>(value);
    };
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

/// One number of a colour, before it is known what it means.
struct Component {
    double number = 0;
    bool isPercentage = false;
};

/// A number, a percentage, an angle where it is the first of a hue, or "none".
std::optional<Component> takeComponent(TextCursor& cursor, bool isHue) {
    const std::string_view before = cursor.rest();
    Component component;
    if (!cursor.number(component.number)) {
        return isWord(cursor.takeLetters(), "none") ? std::optional(component) : std::nullopt;
    }
    component.isPercentage = cursor.take('%');
    if (!isLetter(cursor.peek())) {
        return component;
    }
    cursor.takeLetters();
    const auto degrees = parseAngle(cursor.since(before), true);
    if (!isHue || !degrees) {
        return std::nullopt;
    }
    return Component{*degrees, false};
}

enum class ColourModel : std::uint8_t { rgb, hsl, hwb };

/// Of hues only the first component may be an angle, of the others either all are percentages or
/// none where commas are between them (CSS Color 4, 15).
bool agree(std::span<const Component> colour, ColourModel model, bool hasCommas) {
    if (!hasCommas) {
        return true;
    }
    if (model == ColourModel::rgb) {
        return colour[0].isPercentage == colour[1].isPercentage &&
               colour[1].isPercentage == colour[2].isPercentage;
    }
    return model == ColourModel::hsl && colour[1].isPercentage && colour[2].isPercentage;
}

ScreenColour fromWhiteness(double degrees, double white, double black) {
    const double gray = white + black;
    if (gray >= 1) {
        const std::uint8_t level = byteOf(white / gray);
        return {level, level, level};
    }
    const ScreenColour pure = fromHue(degrees, 1, .5);
    const auto mixed = [&](std::uint8_t level) {
        return byteOf(level / 255.0 * (1 - gray) + white);
    };
    return {mixed(pure.red), mixed(pure.green), mixed(pure.blue)};
}

ScreenColour colourOf(std::span<const Component> parts, ColourModel model) {
    const auto part = [&](std::size_t i) {
        const double whole = model == ColourModel::rgb ? 255 : 100;
        return parts[i].number / (parts[i].isPercentage ? 100 : whole);
    };
    if (model == ColourModel::rgb) {
        return {byteOf(part(0)), byteOf(part(1)), byteOf(part(2))};
    }
    return model == ColourModel::hsl ? fromHue(parts[0].number, part(1), part(2))
                                     : fromWhiteness(parts[0].number, std::clamp(part(1), 0.0, 1.0),
                                                     std::clamp(part(2), 0.0, 1.0));
}

/// "r, g, b" or "h s l / alpha", up to the parenthesis.
std::optional<CssColour> parseComponents(TextCursor& cursor, ColourModel model) {
    std::array<Component, 4> parts{};
    std::size_t count = 0;
    bool hasCommas = false;
    for (cursor.skipBlanks(); cursor.peek() != ')'; cursor.skipBlanks()) {
        if (count == parts.size()) {
            return std::nullopt;
        }
        const bool isComma = count > 0 && cursor.take(',');
        hasCommas = hasCommas || isComma;
        if (!isComma && count == 3 && !cursor.take('/')) {
            return std::nullopt;
        }
        cursor.skipBlanks();
        const auto part = takeComponent(cursor, model != ColourModel::rgb && count == 0);
        if (!part) {
            return std::nullopt;
        }
        parts[count++] = *part;
    }
    cursor.skip();
    const std::span colour = std::span(parts).first(3);
    if (count < 3 || !agree(colour, model, hasCommas)) {
        return std::nullopt;
    }
    const double alpha = parts[3].number / (parts[3].isPercentage ? 100 : 1);
    return CssColour{colourOf(colour, model), count == 4 ? std::clamp(alpha, 0.0, 1.0) : 1};
}

/// The rest behind a colour: nothing, or the same colour in a profile.
std::optional<CssColour> withRest(std::optional<CssColour> colour, TextCursor& cursor) {
    cursor.skipBlanks();
    const bool isRight = cursor.atEnd() || cursor.rest().starts_with("icc-color(");
    return isRight ? colour : std::nullopt;
}

} // namespace

std::optional<CssColour> parseColour(std::string_view text) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    if (cursor.take('#')) {
        const std::string_view before = cursor.rest();
        while (digitOf(cursor.peek()) >= 0) {
            cursor.skip();
        }
        return withRest(parseHex(cursor.since(before)), cursor);
    }
    const std::string name = inSmallLetters(cursor.takeLetters());
    if (cursor.take('(')) {
        const bool isRgb = name == "rgb" || name == "rgba";
        if (!isRgb && name != "hsl" && name != "hsla" && name != "hwb") {
            return std::nullopt;
        }
        const ColourModel model = isRgb           ? ColourModel::rgb
                                  : name == "hwb" ? ColourModel::hwb
                                                  : ColourModel::hsl;
        const auto colour = parseComponents(cursor, model);
        return withRest(colour, cursor);
    }
    if (name == "transparent") {
        return withRest(CssColour{{}, 0}, cursor);
    }
    const std::optional<ScreenColour> named = colourByName(name);
    return withRest(named ? std::optional(CssColour{*named, 1}) : std::nullopt, cursor);
}

} // namespace corvane
