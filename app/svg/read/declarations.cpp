#include "app/svg/read/declarations.h"

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

std::string_view takeOutsideBrackets(TextCursor& cursor, char end) {
    const std::string_view before = cursor.rest();
    char quote = '\0';
    int depth = 0;
    for (; !cursor.atEnd(); cursor.skip()) {
        const char c = cursor.peek();
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
    }
    return cursor.since(before);
}

} // namespace corvane
