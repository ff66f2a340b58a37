#include "app/cli/batch/name_pattern.h"

#include "app/cli/files/hidden_file.h"
#include "app/cli/files/output.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 3> words{"{stem}", "{folder}", "{page}"};

} // namespace

bool isPattern(std::string_view text) {
    return std::ranges::any_of(
        words, [&](std::string_view word) { return text.find(word) != std::string_view::npos; });
}

std::string filledName(std::string_view pattern, std::string_view file, std::int32_t page) {
    std::string name;
    while (!pattern.empty()) {
        const auto word = std::ranges::find_if(
            words, [&](std::string_view candidate) { return pattern.starts_with(candidate); });
        if (word == words.end()) {
            name += pattern.front();
            pattern.remove_prefix(1);
            continue;
        }
        name += *word == "{stem}"     ? std::string(stemOf(file))
                : *word == "{folder}" ? folderOf(std::string(file))
                                      : std::to_string(page);
        pattern.remove_prefix(word->size());
    }
    return name;
}

} // namespace corvane
