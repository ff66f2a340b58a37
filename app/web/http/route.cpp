#include "app/web/http/route.h"

#include "app/cli/batch/page_ranges.h"

#include <algorithm>
#include <array>
#include <vector>

namespace corvane {

namespace {

using Kind = Route::Kind;

/// In a pattern F stands for a file, N for a page, T for a token.
struct Row {
    std::string_view pattern;
    Route route;
};

constexpr Route at(Kind kind, bool posts = false, bool hasBody = false) {
    Route route;
    route.kind = kind;
    route.posts = posts;
    route.hasBody = hasBody;
    return route;
}

Route partOfPage(std::string_view name) {
    Route route;
    route.name = name;
    return route;
}

const std::vector<Row>& rows() {
    static const std::vector<Row> table{
        {"", partOfPage("index.html")},
        {"app.js", partOfPage("app.js")},
        {"app.css", partOfPage("app.css")},
        {"api/files", at(Kind::files)},
        {"api/files/F", at(Kind::info)},
        {"api/files/F/log", at(Kind::log)},
        {"api/files/F/revert", at(Kind::revert, true)},
        {"api/files/F/pages/N/open", at(Kind::open, true)},
        {"api/files/F/pages/N/picture", at(Kind::picture)},
        {"api/files/F/pages/N/thumbnail", at(Kind::thumbnail)},
        {"api/files/F/pages/N/trial", at(Kind::trial, true, true)},
        {"api/files/F/pages/N/save", at(Kind::save, true, true)},
        {"api/artworks/T", at(Kind::artwork)},
        {"api/alive", at(Kind::alive, true)},
        {"api/bye", at(Kind::bye, true)},
    };
    return table;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        if (end == text.size()) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

bool isToken(std::string_view text) {
    return text.size() == 32 &&
           text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

/// Whether a part of the address is what the pattern's part wants; it is noted then.
bool takePart(std::string_view part, std::string_view wanted, Route& route) {
    if (wanted == "F" || wanted == "N") {
        const auto number = wholeNumber(part);
        (wanted == "F" ? route.file : route.page) = number.value_or(0);
        return number && *number > 0;
    }
    if (wanted == "T") {
        route.token = part;
        return isToken(part);
    }
    return part == wanted;
}

bool takePath(const std::vector<std::string_view>& parts, std::string_view pattern, Route& route) {
    const auto wanted = split(pattern, '/');
    return std::ranges::equal(parts, wanted, [&](std::string_view part, std::string_view word) {
        return takePart(part, word, route);
    });
}

bool takeWord(std::string_view word, Route& route) {
    const bool saves = route.kind == Kind::trial || route.kind == Kind::save;
    if (saves && word == "force=yes") {
        route.force = true;
        return true;
    }
    if (saves && word == "mend=yes") {
        route.mend = true;
        return true;
    }
    constexpr std::string_view size = "size=";
    if ((route.kind == Kind::save || route.kind == Kind::revert) && word.starts_with(size)) {
        route.size = wholeNumber(word.substr(size.size()));
        return route.size.has_value();
    }
    constexpr std::string_view update = "update=";
    if (route.kind == Kind::picture && word.starts_with(update)) {
        word.remove_prefix(update.size());
        route.update = word == "0" ? 0 : wholeNumber(word);
        return route.update.has_value();
    }
    return false;
}

} // namespace

std::optional<Route> routeOf(std::string_view target) {
    const std::size_t mark = target.find('?');
    const std::string_view path = target.substr(0, mark);
    if (!path.starts_with("/")) {
        return std::nullopt;
    }
    const auto parts = split(path.substr(1), '/');
    for (const Row& row : rows()) {
        Route route = row.route;
        if (!takePath(parts, row.pattern, route)) {
            continue;
        }
        if (mark != std::string_view::npos) {
            for (const std::string_view word : split(target.substr(mark + 1), '&')) {
                if (!takeWord(word, route)) {
                    return std::nullopt;
                }
            }
        }
        return route;
    }
    return std::nullopt;
}

} // namespace corvane
