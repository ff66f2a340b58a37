#include "writer/paint/object_text.h"

#include "objects/real_object.h"
#include "objects/referenced.h"
#include "output/number_text.h"

#include <array>
#include <cmath>

namespace corvane {

std::string numberText(double number) {
    std::array<char, realRoom> digits{};
    return std::string(digits.data(), writeReal(digits.data(), number + 0.0)) + ' ';
}

std::string nameText(std::string_view name) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "/";
    for (const char letter : name) {
        const auto byte = static_cast<std::uint8_t>(letter);
        const bool isRegular = byte > ' ' && byte < 127 &&
                               std::string_view("#()<>[]{}/%").find(letter) == std::string::npos;
        if (isRegular) {
            text += letter;
        } else {
            text += {'#', digits[byte >> 4U], digits[byte & 15U]};
        }
    }
    return text;
}

namespace {

std::optional<std::string> elementsText(const Object& object, std::string_view before,
                                        std::string_view after, const StringText& stringText) {
    std::string text(before);
    for (const Object& element : elementsObject(object)) {
        const std::optional<std::string> part = objectText(element, stringText);
        if (!part) {
            return std::nullopt;
        }
        text += *part + ' ';
    }
    return text.append(after);
}

} // namespace

std::optional<std::string> objectText(const Object& object, const StringText& stringText) {
    constexpr double steps = 1e9; // objects hold numbers to 32 bits behind the point
    switch (typeObject(object)) {
    case ObjectType::null:
        return "null";
    case ObjectType::boolean:
        return booleanObject(object) ? "true" : "false";
    case ObjectType::integer:
    case ObjectType::fixed:
        return numberText(std::round(realOfObject(object) * steps) / steps);
    case ObjectType::literal:
        return nameText(literalObject(object));
    case ObjectType::reference: {
        const ObjectIdentifier target = referenced(object);
        return std::to_string(target.number) + ' ' + std::to_string(target.generation) + " R";
    }
    case ObjectType::text:
    case ObjectType::block:
        return stringText ? std::optional(stringText(textObject(object))) : std::nullopt;
    case ObjectType::array:
        return elementsText(object, "[ ", "]", stringText);
    case ObjectType::dictionary:
        return elementsText(object, "<< ", ">>", stringText);
    default:
        return std::nullopt;
    }
}

} // namespace corvane
