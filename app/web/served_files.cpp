#include "app/web/served_files.h"

#include "app/cli/fault.h"
#include "app/cli/files/input_file.h"
#include "app/cli/report/json.h"
#include "app/web/limits.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <ctime>
#include <filesystem>
#include <set>
#include <sys/stat.h>

namespace corvane {

namespace {

namespace fs = std::filesystem;

bool isFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

bool hasPdfName(const fs::path& path) {
    std::string ending = path.extension().string();
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".pdf";
}

std::vector<std::string> filesIn(const std::string& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end;
         !error && entry != end && paths.size() < limits::files; entry.increment(error)) {
        std::error_code unknown;
        if (hasPdfName(entry->path()) && entry->is_regular_file(unknown)) {
            paths.push_back(entry->path().string());
        }
    }
    std::ranges::sort(paths);
    return paths;
}

std::string timeText(std::time_t seconds) {
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

} // namespace

ServedFiles::ServedFiles(const std::vector<std::string>& names) : names_(names) {
    for (const std::string& name : names) {
        if (!isFolder(name)) {
            requireReadable(name);
        }
    }
    if (refreshed().empty()) {
        throw Failure({code::access, "there is no PDF in the folder; name another"});
    }
}

std::int32_t ServedFiles::numberOf(const std::string& path) {
    const auto [place, isNew] =
        numbers_.try_emplace(path, static_cast<std::int32_t>(paths_.size()) + 1);
    if (isNew) {
        paths_.push_back(path);
    }
    return place->second;
}

std::vector<std::int32_t> ServedFiles::refreshed() {
    std::vector<std::int32_t> numbers;
    std::set<std::int32_t> seen;
    const auto add = [&](const std::string& path) {
        const std::int32_t number = numberOf(path);
        if (seen.insert(number).second) {
            numbers.push_back(number);
        }
    };
    for (const std::string& name : names_) {
        if (isFolder(name)) {
            std::ranges::for_each(filesIn(name), add);
        } else {
            add(name);
        }
    }
    return numbers;
}

std::string ServedFiles::listJson() {
    const std::lock_guard lock(mutex_);
    const auto numbers = refreshed();
    std::map<std::string, int> uses;
    for (const std::int32_t number : numbers) {
        ++uses[nameOf(paths_[static_cast<std::size_t>(number) - 1])];
    }
    JsonWriter json;
    json.openObject().name("version").text(CORVANE_VERSION).name("files").openArray();
    for (const std::int32_t number : numbers) {
        const std::string& path = paths_[static_cast<std::size_t>(number) - 1];
        const std::string name = nameOf(path);
        struct stat facts {};
        if (stat(path.c_str(), &facts) != 0) {
            continue;
        }
        json.openObject().name("id").text(std::to_string(number));
        json.name("name").text(uses[name] == 1 ? name : path);
        json.name("size").integer(facts.st_size);
        json.name("modified").text(timeText(facts.st_mtime)).closeObject();
    }
    return json.closeArray().closeObject().result();
}

std::optional<std::string> ServedFiles::path(std::int32_t number) const {
    const std::lock_guard lock(mutex_);
    if (number < 1 || static_cast<std::size_t>(number) > paths_.size()) {
        return std::nullopt;
    }
    return paths_[static_cast<std::size_t>(number) - 1];
}

} // namespace corvane
