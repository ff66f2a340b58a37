#include "app/cli/programs/spawning.h"

#include <string_view>
#include <unistd.h>

namespace corvane {

std::vector<char*> spawnWords(std::vector<std::string>& words) {
    std::vector<char*> result;
    result.reserve(words.size() + 1);
    for (std::string& word : words) {
        result.push_back(word.data());
    }
    result.push_back(nullptr);
    return result;
}

std::vector<char*> environmentWithoutPassword() {
    std::vector<char*> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!std::string_view(*entry).starts_with("CORVANE_PASSWORD=")) {
            result.push_back(*entry);
        }
    }
    result.push_back(nullptr);
    return result;
}

} // namespace corvane
