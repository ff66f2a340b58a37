#include "app/cli/files/temporary_folder.h"

#include "app/cli/fault.h"
#include "toolbox/descriptor.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr int deepest = 16; ///< folders in folders that editors make

bool isDots(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

void removeLevel(int parent, const char* name, int depth) {
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
            removeLevel(number, entry->d_name, depth + 1);
        }
    }
    closedir(folder);
    unlinkat(parent, name, AT_REMOVEDIR);
}

} // namespace

std::vector<std::string> temporaryFolders() {
    const char* const usual = "/tmp";
    std::vector<std::string> folders;
    for (const char* const folder : {static_cast<const char*>(std::getenv("TMPDIR")), usual,
                                     static_cast<const char*>(std::getenv("XDG_RUNTIME_DIR"))}) {
        if (folder != nullptr && *folder == '/') {
            folders.emplace_back(folder);
        }
    }
    return folders;
}

std::string makeTemporaryFolder(std::string_view prefix) {
    for (const std::string& parent : temporaryFolders()) {
        std::string path = parent + "/" + std::string(prefix) + std::string(chosenLetters, 'X');
        if (mkdtemp(path.data()) != nullptr) {
            return path;
        }
    }
    throw Failure(outputFault("a folder for the artwork", lastError()));
}

void removeTree(int parent, const char* name) {
    removeLevel(parent, name, 0);
}

} // namespace corvane
