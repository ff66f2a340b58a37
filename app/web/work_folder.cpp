#include "app/web/work_folder.h"

#include "app/cli/fault.h"
#include "app/cli/files/temporary_folder.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

constexpr std::string_view prefix = "corvane-serve-";
constexpr int onlyFolders = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isOurName(std::string_view name) {
    const auto isChosen = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    };
    return name.size() == prefix.size() + chosenLetters && name.starts_with(prefix) &&
           std::ranges::all_of(name.substr(prefix.size()), isChosen);
}

/// The folder, locked, if it is one of this user that no process uses.
Descriptor abandoned(int parent, const char* name) {
    Descriptor folder(openat(parent, name, onlyFolders));
    struct stat facts {};
    if (!folder || fstat(folder.number(), &facts) != 0 || facts.st_uid != geteuid() ||
        (facts.st_mode & (S_IRWXG | S_IRWXO)) != 0 ||
        flock(folder.number(), LOCK_EX | LOCK_NB) != 0) {
        return {};
    }
    // Before it was locked, another may have got the name.
    struct stat named {};
    const bool isSame = fstatat(parent, name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                        named.st_dev == facts.st_dev && named.st_ino == facts.st_ino;
    return isSame ? std::move(folder) : Descriptor();
}

void removeAbandoned() {
    namespace fs = std::filesystem;
    for (const std::string& parent : temporaryFolders()) {
        const Descriptor place(open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        std::error_code error;
        for (fs::directory_iterator entry(parent, error), end; place && !error && entry != end;
             entry.increment(error)) {
            const std::string name = entry->path().filename().native();
            if (!isOurName(name)) {
                continue;
            }
            if (const Descriptor folder = abandoned(place.number(), name.c_str())) {
                removeTree(place.number(), name.c_str());
            }
        }
    }
}

} // namespace

WorkFolder::WorkFolder() {
    removeAbandoned();
    constexpr int attempts = 8;
    for (int i = 0; i < attempts; ++i) {
        path_ = makeTemporaryFolder(prefix);
        lock_ = Descriptor(open(path_.c_str(), onlyFolders));
        // Until it is locked, another server that starts may take it for abandoned.
        struct stat facts {};
        if (lock_ && flock(lock_.number(), LOCK_EX | LOCK_NB) == 0 &&
            fstat(lock_.number(), &facts) == 0 && facts.st_nlink != 0) {
            return;
        }
        rmdir(path_.c_str());
    }
    throw Failure(outputFault("a folder for the artwork",
                              std::make_error_code(std::errc::device_or_resource_busy)));
}

WorkFolder::~WorkFolder() {
    removeTree(AT_FDCWD, path_.c_str());
}

} // namespace corvane
