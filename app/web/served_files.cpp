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

/// The first of a folder by their names, and how many there are besides.
struct FolderFiles {
    std::vector<std::string> paths;
    std::int64_t leftOut = 0;
};

/// Keeps the first paths of all, with room for as many more, so that a folder of millions takes
/// little memory.
class FirstPaths {
public:
    void add(std::string path) {
        paths_.push_back(std::move(path));
        ++count_;
        if (paths_.size() >= 2 * limits::files) {
            cut();
        }
    }

    FolderFiles sorted() {
        cut();
        std::ranges::sort(paths_);
        const auto left = count_ - std::ssize(paths_);
        return {std::move(paths_), left};
    }

private:
    void cut() {
        if (paths_.size() > limits::files) {
            const auto end = paths_.begin() + static_cast<std::ptrdiff_t>(limits::files);
            std::ranges::nth_element(paths_, end);
            paths_.erase(end, paths_.end());
        }
    }

    std::vector<std::string> paths_;
    std::int64_t count_ = 0;
};

FolderFiles filesIn(const std::string& folder) {
    FirstPaths paths;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        if (hasPdfName(entry->path()) && entry->is_regular_file(unknown)) {
            paths.add(entry->path().string());
        }
    }
    return paths.sorted();
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
    if (refreshed().numbers.empty()) {
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

ServedFiles::Listing ServedFiles::refreshed() {
    Listing listing;
    std::set<std::int32_t> seen;
    const auto add = [&](const std::string& path) {
        const std::int32_t number = numberOf(path);
        if (seen.insert(number).second) {
            listing.numbers.push_back(number);
        }
    };
    for (const std::string& name : names_) {
        if (isFolder(name)) {
            const FolderFiles files = filesIn(name);
            std::ranges::for_each(files.paths, add);
            listing.leftOut += files.leftOut;
        } else {
            add(name);
        }
    }
    return listing;
}

std::string ServedFiles::listJson(std::string_view start) {
    const std::lock_guard lock(mutex_);
    const auto [numbers, leftOut] = refreshed();
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
    json.closeArray().name("leftOut").integer(leftOut).name("start").text(start);
    return json.closeObject().result();
}

std::optional<std::string> ServedFiles::path(std::int32_t number) const {
    const std::lock_guard lock(mutex_);
    if (number < 1 || static_cast<std::size_t>(number) > paths_.size()) {
        return std::nullopt;
    }
    return paths_[static_cast<std::size_t>(number) - 1];
}

} // namespace corvane
