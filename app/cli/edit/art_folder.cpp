#include "app/cli/edit/art_folder.h"

#include "app/cli/files/temporary_folder.h"

#include <fcntl.h>
#include <filesystem>

namespace corvane {

namespace {

bool isLitter(const std::string& name) {
    return name.starts_with(".") || name.starts_with("#") || name.ends_with("~") ||
           name.ends_with(".bak");
}

} // namespace

ArtFolder::ArtFolder() : path_(makeTemporaryFolder("corvane-edit-")) {}

ArtFolder::~ArtFolder() {
    if (!isKept_) {
        removeTree(AT_FDCWD, path_.c_str());
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
