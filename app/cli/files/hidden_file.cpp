#include "app/cli/files/hidden_file.h"

#include "host/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::string_view prefix = ".corvane-unfinished-";
constexpr std::string_view chosen = "XXXXXX"; // six letters and digits, by mkostemp

std::string contentOf(const std::string& keeper) {
    return keeper + ".pdf";
}

/// AppleDouble: "._name" beside "name".
std::string forkOf(const std::string& path) {
    const std::size_t name = path.rfind('/') + 1;
    return path.substr(0, name) + "._" + path.substr(name);
}

bool isKeeperName(std::string_view name) {
    const auto isChosen = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    };
    return name.size() == prefix.size() + chosen.size() && name.starts_with(prefix) &&
           std::ranges::all_of(name.substr(prefix.size()), isChosen);
}

/// Whether `path` itself is a regular file of this user, which has no other name.
bool isOwn(const std::string& path, struct stat& facts) {
    return lstat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
           facts.st_uid == geteuid() && facts.st_nlink == 1;
}

void removeOwn(const std::string& path) {
    struct stat facts {};
    if (isOwn(path, facts)) {
        unlink(path.c_str());
    }
}

/// Whether nobody else holds a lock of the file; the lock lasts as long as `file`. False where the
/// file system knows no locks.
bool isUnused(const Descriptor& file) {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return fcntl(file.number(), F_OFD_SETLK, &whole) == 0;
}

void removeIfAbandoned(const std::string& keeper) {
    struct stat facts {};
    if (!isOwn(keeper, facts)) {
        return;
    }
    const Descriptor file(
        open(keeper.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file || !isUnused(file)) {
        return;
    }
    // Before it was locked, its process may have ended, and another have got the name.
    struct stat locked {};
    if (!isOwn(keeper, facts) || fstat(file.number(), &locked) != 0 ||
        facts.st_dev != locked.st_dev || facts.st_ino != locked.st_ino) {
        return;
    }
    const std::string content = contentOf(keeper);
    removeOwn(content);
    removeOwn(forkOf(content));
    unlink(keeper.c_str()); // last: without it nobody would know what the others are
}

} // namespace

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

void removeAbandoned(const std::string& target) {
    namespace fs = std::filesystem;
    std::error_code error;
    for (fs::directory_iterator entry(folderOf(target), error), end; !error && entry != end;
         entry.increment(error)) {
        if (isKeeperName(entry->path().filename().native())) {
            removeIfAbandoned(entry->path().native());
        }
    }
}

HiddenFile::~HiddenFile() {
    for (const std::string* path : {&content_, &fork_, &keeper_}) {
        if (!path->empty()) {
            unlink(path->c_str());
        }
    }
    if (lock_ != 0) {
        unlockFile(lock_);
    }
}

Descriptor HiddenFile::make(const std::string& target, bool tidies) {
    if (tidies) {
        removeAbandoned(target);
    }
    constexpr int attempts = 8;
    const std::string pattern = folderOf(target) + "/" + std::string(prefix) + std::string(chosen);
    for (int i = 0; i < attempts; ++i) {
        std::string path = pattern;
        Descriptor file(mkostemp(path.data(), O_CLOEXEC));
        if (!file) {
            return file;
        }
        // Until it is locked, another process may take it for abandoned.
        struct stat facts {};
        if (lockFile(path, lock_) == noErr && fstat(file.number(), &facts) == 0 &&
            facts.st_nlink != 0) {
            keeper_ = content_ = path;
            return file;
        }
        unlockFile(lock_);
        unlink(path.c_str());
    }
    errno = EBUSY;
    return {};
}

void HiddenFile::vacate() {
    content_ = contentOf(keeper_);
    fork_ = forkOf(content_);
}

void HiddenFile::letGo() {
    if (content_ == keeper_) {
        keeper_.clear();
    }
    content_.clear();
}

} // namespace corvane
