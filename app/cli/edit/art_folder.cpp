#include "app/cli/edit/art_folder.h"

#include "app/cli/fault.h"
#include "toolbox/descriptor.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr int deepest = 16; ///< folders in folders that editors make

/// A new folder in `parent`, an absolute path; empty where there can be none.
std::string madeIn(const char* parent) {
    if (parent == nullptr || *parent != '/') {
        return {};
    }
    std::string path = std::string(parent) + "/corvane-edit-XXXXXX";
    return mkdtemp(path.data()) != nullptr ? path : std::string();
}

bool isDots(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

/// Takes a folder away with all in it; links are not followed. What cannot be removed stays.
void removeTree(int parent, const char* name, int depth) {
    const int number = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR* const folder = number >= 0 ? fdopendir(number) : nullptr;
    if (folder == nullptr) {
        if (number >= 0) {
            close(number);
        }
        return;
    }
    while (const dirent* const entry = readdir(folder)) {
        if (!isDots(entry->d_name) && unlinkat(number, entry->d_name, 0) != 0 && depth < deepest) {
            removeTree(number, entry->d_name, depth + 1);
        }
    }
    closedir(folder);
    unlinkat(parent, name, AT_REMOVEDIR);
}

bool isLitter(const std::string& name) {
    return name.starts_with(".") || name.starts_with("#") || name.ends_with("~") ||
           name.ends_with(".bak");
}

} // namespace

ArtFolder::ArtFolder() {
    const char* const temporary = std::getenv("TMPDIR");
    const char* const usual = "/tmp";
    const char* const session = std::getenv("XDG_RUNTIME_DIR");
    for (const char* const parent : {temporary, usual, session}) {
        path_ = madeIn(parent);
        if (!path_.empty()) {
            return;
        }
    }
    throw Failure(outputFault("a folder for the artwork", lastError()));
}

ArtFolder::~ArtFolder() {
    if (!isKept_) {
        removeTree(AT_FDCWD, path_.c_str(), 0);
    }
}

std::set<std::string> ArtFolder::names() const {
    namespace fs = std::filesystem;
    std::set<std::string> names;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(path_, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        if (!entry->is_directory(unknown)) {
            names.insert(entry->path().lexically_relative(path_).string());
        }
    }
    return names;
}

std::vector<std::string> ArtFolder::others() const {
    std::vector<std::string> others;
    for (const std::string& name : names()) {
        if (!own_.contains(name) && !isLitter(name.substr(name.rfind('/') + 1))) {
            others.push_back(name);
        }
    }
    return others;
}

} // namespace corvane
