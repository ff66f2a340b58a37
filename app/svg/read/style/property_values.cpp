#include "app/svg/read/style/property_values.h"

#include "app/svg/read/style/css_colour.h"
#include "app/svg/read/style/declarations.h"
#include "app/svg/read/values/length.h"
#include "app/svg/read/values/transform.h"

#include <algorithm>
#include <array>
#include <limits>

namespace corvane {

namespace {

/// Words that every property may have.
bool isCommonKeyword(std::string_view value) {
    return keywordIn(value, {"inherit", "initial", "unset", "revert", "revert-layer"}).has_value();
}

bool isColour(std::string_view value) {
    return isCurrentColour(value) || parseColour(value).has_value();
}

bool isPaint(std::string_view value) {
    return value.starts_with("url(") || value.starts_with("context-") || isWord(value, "none") ||
           isColour(value);
}

bool isLengthOf(std::string_view value, double least) {
    const auto length = parseLength(value, Axis::other, {{1, 1}, 1});
    return length && *length >= least;
}

bool isDashes(std::string_view value) {
    TextCursor cursor(value);
    for (cursor.skipBlanks(); !cursor.atEnd(); cursor.skipSeparator()) {
        const std::string_view before = cursor.rest();
        while (!cursor.atEnd() && !isBlank(cursor.peek()) && cursor.peek() != ',') {
            cursor.skip();
        }
        if (!isLengthOf(cursor.since(before), 0)) {
            return false;
        }
    }
    return true;
}

bool isLimit(std::string_view value) {
    double limit = 0;
    return TextCursor(value).number(limit) && limit >= 1;
}

std::string_view withoutQuotes(std::string_view text) {
    text = trimmed(text);
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
        text.front() == text.back()) {
        text = trimmed(text.substr(1, text.size() - 2));
    }
    return text;
}

struct Initial {
    Attribute property;
    std::string_view value;
};
/// Of the inherited properties but those of text.
constexpr auto inherited = std::to_array<Initial>({
    {Attribute::fill, "black"},           {Attribute::stroke, "none"},
    {Attribute::color, "black"},          {Attribute::fillOpacity, "1"},
    {Attribute::strokeOpacity, "1"},      {Attribute::strokeWidth, "1"},
    {Attribute::strokeDasharray, "none"}, {Attribute::strokeDashoffset, "0"},
    {Attribute::strokeLinecap, "butt"},   {Attribute::strokeLinejoin, "miter"},
    {Attribute::strokeMiterlimit, "4"},   {Attribute::fillRule, "nonzero"},
    {Attribute::clipRule, "nonzero"},     {Attribute::visibility, "visible"},
    {Attribute::marker, "none"},          {Attribute::markerStart, "none"},
    {Attribute::markerMid, "none"},       {Attribute::markerEnd, "none"},
    {Attribute::paintOrder, "normal"},    {Attribute::colorInterpolation, "srgb"},
    {Attribute::imageRendering, "auto"},
});
constexpr auto notInherited = std::to_array<Initial>({
    {Attribute::opacity, "1"},
    {Attribute::display, "inline"},
    {Attribute::overflow, "hidden"},
    {Attribute::clipPath, "none"},
    {Attribute::stopColor, "black"},
    {Attribute::stopOpacity, "1"},
    {Attribute::filter, "none"},
    {Attribute::mask, "none"},
    {Attribute::maskType, "luminance"},
    {Attribute::mixBlendMode, "normal"},
    {Attribute::isolation, "auto"},
    {Attribute::vectorEffect, "none"},
    {Attribute::transform, "none"},
    {Attribute::transformOrigin, "0"},
    {Attribute::transformBox, "view-box"},
    {Attribute::background, "none"},
    {Attribute::backgroundColor, "transparent"},
});

template <class List>
std::string_view initialIn(const List& list, Attribute property) {
    const auto found = std::ranges::find(list, property, &Initial::property);
    return found == list.end() ? std::string_view{} : found->value;
}

} // namespace

std::optional<std::size_t> keywordIn(std::string_view word,
                                     std::initializer_list<std::string_view> list) {
    const auto found =
        std::ranges::find_if(list, [&](std::string_view known) { return isWord(word, known); });
    return found == list.end() ? std::nullopt
                               : std::optional(static_cast<std::size_t>(found - list.begin()));
}

bool isValueOf(Attribute property, std::string_view value) {
    if (isCommonKeyword(value) || isUnreadValue(value)) {
        return true;
    }
    switch (property) {
    case Attribute::fill:
    case Attribute::stroke:
        return isPaint(value);
    case Attribute::color:
    case Attribute::stopColor:
        return isColour(value);
    case Attribute::opacity:
    case Attribute::fillOpacity:
    case Attribute::strokeOpacity:
    case Attribute::stopOpacity:
        return parseOpacity(value).has_value();
    case Attribute::strokeWidth:
        return isLengthOf(value, 0);
    case Attribute::strokeDashoffset:
        return isLengthOf(value, -std::numeric_limits<double>::infinity());
    case Attribute::strokeDasharray:
        return isWord(value, "none") || isDashes(value);
    case Attribute::strokeMiterlimit:
        return isLimit(value);
    case Attribute::strokeLinecap:
        return keywordIn(value, {"butt", "round", "square"}).has_value();
    case Attribute::strokeLinejoin:
        return keywordIn(value, {"miter", "round", "bevel"}).has_value();
    case Attribute::fillRule:
    case Attribute::clipRule:
        return keywordIn(value, {"nonzero", "evenodd"}).has_value();
    case Attribute::visibility:
        return keywordIn(value, {"visible", "hidden", "collapse"}).has_value();
    case Attribute::display:
    case Attribute::overflow:
        return std::ranges::all_of(value,
                                   [](char c) { return isLetter(c) || c == '-' || c == ' '; });
    case Attribute::clipPath:
    case Attribute::mask:
    case Attribute::filter:
    case Attribute::markerStart:
    case Attribute::markerMid:
    case Attribute::markerEnd:
        return isWord(value, "none") || value.find('(') != std::string_view::npos;
    default:
        return true;
    }
}

std::string_view withoutKeywords(Attribute property, std::string_view value) {
    const auto keyword =
        keywordIn(value, {"inherit", "initial", "unset", "revert", "revert-layer"});
    if (!keyword || *keyword == 0) {
        return keyword ? "inherit" : value;
    }
    const std::string_view ofInherited = initialIn(inherited, property);
    const std::string_view initial =
        ofInherited.empty() ? initialIn(notInherited, property) : ofInherited;
    const bool inherits = *keyword != 1 && (!ofInherited.empty() || initial.empty());
    return inherits ? "inherit" : initial.empty() ? value : initial;
}

std::optional<std::string_view> localReference(std::string_view text, std::string_view* rest) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    if (!cursor.rest().starts_with("url(")) {
        return std::nullopt;
    }
    cursor.takeUntil('(');
    const std::string_view reference = withoutQuotes(takeOutsideBrackets(cursor, ')'));
    if (rest != nullptr) {
        *rest = trimmed(cursor.rest());
    }
    if (!reference.starts_with('#')) {
        return std::nullopt;
    }
    return reference.substr(1);
}

std::optional<double> parseOpacity(std::string_view text) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    double value = 0;
    if (!cursor.number(value)) {
        return std::nullopt;
    }
    value = cursor.take('%') ? value / 100 : value;
    cursor.skipBlanks();
    return cursor.atEnd() ? std::optional(std::clamp(value, 0.0, 1.0)) : std::nullopt;
}

} // namespace corvane
