#include "app/web/kept_files.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

void KeptFiles::remove(std::list<Row>::iterator row) {
    unlink(row->path.c_str());
    bytes_ -= row->bytes;
    rows_.erase(row);
}

void KeptFiles::keep(const std::string& name, const std::string& path) {
    struct stat facts {};
    stat(path.c_str(), &facts);
    const std::lock_guard lock(mutex_);
    const auto former = std::ranges::find(rows_, name, &Row::name);
    if (former != rows_.end()) {
        remove(former);
    }
    rows_.push_front({name, path, facts.st_size});
    bytes_ += facts.st_size;
    while (rows_.size() > 1 && (rows_.size() > most_ || bytes_ > mostBytes_)) {
        remove(std::prev(rows_.end()));
    }
}

std::optional<std::string> KeptFiles::find(const std::string& name) {
    const std::lock_guard lock(mutex_);
    const auto row = std::ranges::find(rows_, name, &Row::name);
    if (row == rows_.end()) {
        return std::nullopt;
    }
    rows_.splice(rows_.begin(), rows_, row);
    return row->path;
}

} // namespace corvane
