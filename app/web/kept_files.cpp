#include "app/web/kept_files.h"

#include "app/cli/fault.h"

#include <algorithm>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

KeptFiles::File opened(const std::string& path) {
    return std::make_shared<const Descriptor>(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

} // namespace

void KeptFiles::remove(std::list<Row>::iterator row) {
    unlink(row->path.c_str());
    bytes_ -= row->bytes;
    rows_.erase(row);
}

KeptFiles::File KeptFiles::keep(const std::string& name, const std::string& path) {
    File file = opened(path);
    struct stat facts {};
    if (!*file || fstat(file->number(), &facts) != 0) {
        throw Failure(outputFault("what was made of the page", lastError()));
    }
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
    return file;
}

KeptFiles::File KeptFiles::find(const std::string& name) {
    const std::lock_guard lock(mutex_);
    const auto row = std::ranges::find(rows_, name, &Row::name);
    if (row == rows_.end()) {
        return nullptr;
    }
    rows_.splice(rows_.begin(), rows_, row);
    File file = opened(row->path);
    return *file ? file : nullptr;
}

} // namespace corvane
