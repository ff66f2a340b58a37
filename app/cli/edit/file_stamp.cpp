#include "app/cli/edit/file_stamp.h"

#include <sys/stat.h>

namespace corvane {

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0) {
        return std::nullopt;
    }
    return FileStamp{facts.st_dev, facts.st_ino, facts.st_size, facts.st_mtim.tv_sec,
                     facts.st_mtim.tv_nsec};
}

} // namespace corvane
