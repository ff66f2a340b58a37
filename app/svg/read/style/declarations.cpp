#include "app/svg/read/style/declarations.h"

#include "app/svg/read/style/property_values.h"

namespace corvane {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

void Declared::offer(Attribute property, std::string_view value) {
    const bool isValue = isValueOf(property, trimmed(value));
    if (isValue && property == Attribute::textDecoration) {
        for (const Attribute said :
             {Attribute::textDecorationLine, Attribute::textDecorationStyle,
              Attribute::textDecorationColor, Attribute::textDecorationThickness}) {
            present_.reset(place(said));
        }
    }
    if (!has(property) || isValue) {
        set(property, value);
    }
}

std::string_view valueOf(const Declared& declared, Attribute property) {
    const std::string_view text = trimmed(declared[property]);
    return text == "inherit" ? std::string_view{} : text;
}

namespace {

bool takeComment(TextCursor& cursor) {
    const std::string_view rest = cursor.rest();
    if (!rest.starts_with("/*")) {
        return false;
    }
    const std::size_t end = rest.find("*/", 2);
    cursor = TextCursor(rest.substr(end == std::string_view::npos ? rest.size() : end + 2));
    return true;
}

} // namespace

std::string_view withoutCommentsAround(std::string_view text) {
    TextCursor cursor(trimmed(text));
    while (takeComment(cursor)) {
        cursor.skipBlanks();
    }
    std::string_view inside = cursor.rest();
    while (inside.ends_with("*/") && inside.rfind("/*") != std::string_view::npos) {
        inside = trimmed(inside.substr(0, inside.rfind("/*")));
    }
    return inside;
}

std::string_view takeOutsideBrackets(TextCursor& cursor, char end) {
    const std::string_view before = cursor.rest();
    char quote = '\0';
    int depth = 0;
    while (!cursor.atEnd()) {
        const char c = cursor.peek();
        if (c == '/' && quote == '\0' && depth == 0 && takeComment(cursor)) {
            continue;
        }
        if (quote != '\0') {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == end && depth == 0) {
            const std::string_view taken = cursor.since(before);
            cursor.skip();
            return taken;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')') {
            depth -= depth > 0 ? 1 : 0;
        }
        cursor.skip();
    }
    return cursor.since(before);
}

} // namespace corvane
