#include "app/web/file_start.h"

#include "app/cli/fault.h"
#include "app/web/limits.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>

namespace corvane {

namespace {

/// Between two looks whether it is still wanted.
constexpr std::int64_t pieceBytes = std::int64_t{8} << 20;

[[noreturn]] void failCopy(std::error_code error) {
    throw Failure(outputFault("a copy of the file", error));
}

/// A pipe or a device in its place would wait for others, or have no end.
Descriptor openRegular(const std::string& path, std::int64_t length) {
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat facts {};
    if (!file || fstat(file.number(), &facts) != 0) {
        throw Failure({code::access, "the file cannot be read (" + lastError().message() + ")"});
    }
    if (!S_ISREG(facts.st_mode) || facts.st_size < length) {
        throw Failure({code::fileChanged, "the file is another one by now; open it again"});
    }
    return file;
}

} // namespace

void copyStart(const std::string& from, const std::string& to, std::int64_t length,
               const std::function<bool()>& isUnwanted) {
    if (length > limits::formerBytes) {
        throw Failure({code::io, "the file is too long to be shown as it was before an update"});
    }
    const Descriptor source = openRegular(from, length);
    const Descriptor target(open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!target) {
        failCopy(lastError());
    }
    while (length > 0) {
        if (isUnwanted()) {
            throw Failure({code::cancelled, "cancelled"});
        }
        const ssize_t count = sendfile(target.number(), source.number(), nullptr,
                                       static_cast<std::size_t>(std::min(length, pieceBytes)));
        if (count == 0) {
            failCopy(std::make_error_code(std::errc::io_error)); // cut short meanwhile
        }
        if (count < 0 && errno != EINTR) {
            failCopy(lastError());
        }
        length -= std::max<ssize_t>(count, 0);
    }
}

} // namespace corvane
