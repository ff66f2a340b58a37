#include "app/cli/edit/desktop_entry.h"

#include "app/cli/edit/key_file.h"
#include "app/cli/programs/installed_program.h"
#include "app/images/base64.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::string_view group = "Desktop Entry";

/// Takes the quoting of a command line apart: "..." is one word, in which a backslash keeps a
/// quote, a backtick, a dollar sign or a backslash. Codes of quoted words stand for themselves, so
/// their percent signs are doubled. None where a quote has no end.
std::optional<std::vector<std::string>> quotedWords(std::string_view line) {
    std::vector<std::string> words;
    bool isInWord = false;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (!isQuoted && c == ' ') {
            isInWord = false;
            continue;
        }
        if (!isInWord) {
            words.emplace_back();
            isInWord = true;
        }
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted && c == '\\' && i + 1 < line.size()) {
            words.back() += line[++i];
        } else {
            words.back() += c;
            if (isQuoted && c == '%') {
                words.back() += '%';
            }
        }
    }
    if (isQuoted) {
        return std::nullopt;
    }
    return words;
}

/// What a code within a word stands for; none for one that nobody knows.
std::optional<std::string> meaning(char code, const DesktopEntry& entry, std::string_view file) {
    switch (code) {
    case '%':
        return "%";
    case 'f':
    case 'F':
        return std::string(file);
    case 'u':
    case 'U':
        return "file://" + escapedPath(file);
    case 'c':
        return entry.name;
    case 'k':
        return entry.path;
    case 'd':
    case 'D':
    case 'n':
    case 'N':
    case 'v':
    case 'm':
        return ""; // of former versions: they stand for nothing
    default:
        return std::nullopt;
    }
}

/// `word` with its codes replaced; none where one of them is unknown.
std::optional<std::string> filled(std::string_view word, const DesktopEntry& entry,
                                  std::string_view file, bool& takesFile) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%') {
            text += word[i];
            continue;
        }
        const char code = ++i < word.size() ? word[i] : '\0';
        const auto part = meaning(code, entry, file);
        if (!part) {
            return std::nullopt;
        }
        takesFile = takesFile || std::string_view("fFuU").find(code) != std::string_view::npos;
        text += *part;
    }
    return text;
}

} // namespace

std::optional<DesktopEntry> readDesktopEntry(const std::string& path) {
    const auto file = KeyFile::read(path);
    if (!file || file->value(group, "Type") != "Application" || file->isTrue(group, "Hidden") ||
        file->isTrue(group, "Terminal")) {
        return std::nullopt;
    }
    const std::string tried = unescaped(file->value(group, "TryExec"));
    if (!tried.empty() && installedProgram(tried).empty()) {
        return std::nullopt;
    }
    return DesktopEntry{path, unescaped(file->value(group, "Name")),
                        unescaped(file->value(group, "Exec")),
                        unescaped(file->value(group, "Icon")), file->list(group, "Categories")};
}

bool isForDrawing(const DesktopEntry& entry) {
    const auto has = [&](const char* category) {
        return std::ranges::find(entry.categories, category) != entry.categories.end();
    };
    return !has("Viewer") && !has("WebBrowser") &&
           (has("VectorGraphics") || !has("RasterGraphics"));
}

std::optional<std::vector<std::string>> openingWords(const DesktopEntry& entry,
                                                     std::string_view file) {
    const auto parts = quotedWords(entry.exec);
    if (!parts || parts->empty()) {
        return std::nullopt;
    }
    std::vector<std::string> words;
    bool takesFile = false;
    for (const std::string& part : *parts) {
        if (part == "%i") {
            if (!entry.icon.empty()) {
                words.insert(words.end(), {"--icon", entry.icon});
            }
            continue;
        }
        const auto word = filled(part, entry, file, takesFile);
        if (!word) {
            return std::nullopt;
        }
        if (!word->empty() || part.empty()) {
            words.push_back(*word);
        }
    }
    words.front() = installedProgram(words.front());
    if (!takesFile || words.front().empty()) {
        return std::nullopt;
    }
    return words;
}

} // namespace corvane
