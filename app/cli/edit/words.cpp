#include "app/cli/edit/words.h"

namespace corvane {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

} // namespace

std::optional<std::vector<std::string>> commandWords(std::string_view line) {
    std::vector<std::string> words;
    bool isInWord = false;
    char quote = '\0';
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote == '\0' && isBlank(c)) {
            isInWord = false;
            continue;
        }
        if (!isInWord) {
            words.emplace_back();
            isInWord = true;
        }
        const bool hasNext = i + 1 < line.size();
        const bool keepsNext =
            c == '\\' && hasNext &&
            (quote == '\0' || (quote == '"' && (line[i + 1] == '"' || line[i + 1] == '\\')));
        if (keepsNext) {
            words.back() += line[++i];
        } else if (quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
        } else if (quote != '\0' && c == quote) {
            quote = '\0';
        } else {
            words.back() += c;
        }
    }
    if (quote != '\0') {
        return std::nullopt;
    }
    return words;
}

} // namespace corvane
