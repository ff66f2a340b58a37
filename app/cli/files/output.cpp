#include "app/cli/files/output.h"

#include "app/cli/fault.h"
#include "app/cli/interrupt.h"
#include "host/utf8.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

mode_t modeOfNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<mode_t>(0666) & ~mask;
}

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> place(realpath(path.c_str(), nullptr),
                                                            &std::free);
    return place ? place.get() : path;
}

std::string shownName(const OutputTarget& target) {
    return target.kind == OutputTarget::Kind::standardOutput ? "standard output" : target.path;
}

[[noreturn]] void refuse(const std::string& sentence) {
    throw Failure({code::io, sentence});
}

bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool endsInPdf(std::string_view name) {
    constexpr std::string_view ending = ".pdf";
    return name.size() >= ending.size() &&
           std::ranges::equal(name.substr(name.size() - ending.size()), ending, [](char a, char b) {
               return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
           });
}

} // namespace

OutputTarget outputTarget(const std::string& path, const std::string& input, bool isChosen) {
    OutputTarget target{.path = path, .place = path, .mode = modeOfNewFiles()};
    struct stat there {};
    if (path == "-") {
        target.kind = OutputTarget::Kind::standardOutput;
        if (fstat(STDOUT_FILENO, &there) != 0) {
            throw Failure(outputFault(shownName(target), lastError()));
        }
    } else if (stat(path.c_str(), &there) != 0) {
        if (errno != ENOENT) {
            throw Failure(outputFault(path, lastError()));
        }
        target.kind = isChosen ? OutputTarget::Kind::file : OutputTarget::Kind::newFile;
    } else if (!isChosen) {
        refuse(path + " is there already; name the output with -o to replace it");
    } else if (S_ISREG(there.st_mode)) {
        target.isThere = true;
        target.place = resolved(path);
        target.mode = there.st_mode & 0777;
        if (access(path.c_str(), W_OK) != 0) {
            throw Failure(outputFault(path, lastError()));
        }
    } else {
        target.kind = OutputTarget::Kind::stream;
    }
    struct stat source {};
    if (stat(input.c_str(), &source) == 0 && isSameFile(source, there)) {
        refuse(shownName(target) + " is read from; name another file");
    }
    const bool isFile =
        target.kind == OutputTarget::Kind::file || target.kind == OutputTarget::Kind::newFile;
    if (isFile && access(folderOf(target.place).c_str(), W_OK | X_OK) != 0) {
        throw Failure(outputFault(path, lastError()));
    }
    return target;
}

std::string_view stemOf(std::string_view input) {
    constexpr std::size_t pdfEnding = 4;
    std::string_view stem = input.substr(input.rfind('/') + 1);
    if (endsInPdf(stem)) {
        stem.remove_suffix(pdfEnding);
    }
    return stem;
}

std::string outputName(std::string_view input, std::int32_t page) {
    const std::string ending = "-page" + std::to_string(page) + ".svg";
    return std::string(cutText(stemOf(input), NAME_MAX - ending.size())) + ending;
}

OutputFile::OutputFile(const OutputTarget& target) : target_(target) {
    switch (target.kind) {
    case OutputTarget::Kind::standardOutput:
        descriptor_ = Descriptor(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
        break;
    case OutputTarget::Kind::stream:
        descriptor_ = Descriptor(open(target.place.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
        break;
    case OutputTarget::Kind::newFile:
    case OutputTarget::Kind::file:
        descriptor_ = hidden_.make(target.place, target.isFirst);
        break;
    }
    if (!descriptor_) {
        const std::error_code error = lastError();
        require(interrupted() ? std::make_error_code(std::errc::operation_canceled) : error);
    }
}

void OutputFile::vacate() {
    descriptor_.close();
    hidden_.vacate();
}

std::error_code OutputFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        if (interrupted()) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        const ssize_t written = ::write(descriptor_.number(), bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return lastError();
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return {};
}

void OutputFile::commit(std::error_code error) {
    require(error ? error : finish());
}

std::error_code OutputFile::finish() {
    if (hiddenPath().empty()) {
        return close();
    }
    if (!descriptor_) {
        descriptor_ = Descriptor(open(hiddenPath().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    }
    if (fchmod(descriptor_.number(), target_.mode) != 0 ||
        (target_.isSynced && fsync(descriptor_.number()) != 0)) {
        return lastError();
    }
    if (const std::error_code error = close()) {
        return error;
    }
    if (const std::error_code error = publish()) {
        return error;
    }
    hidden_.letGo();
    return {};
}

std::error_code OutputFile::close() {
    // After EINTR the descriptor is closed all the same.
    return descriptor_.close() || errno == EINTR ? std::error_code() : lastError();
}

std::error_code OutputFile::publish() const {
    const bool mustBeFree = target_.kind == OutputTarget::Kind::newFile;
    int result = renameat2(AT_FDCWD, hiddenPath().c_str(), AT_FDCWD, target_.place.c_str(),
                           mustBeFree ? RENAME_NOREPLACE : 0);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
        // A file system without that promise; the name was free when the work began.
        result = std::rename(hiddenPath().c_str(), target_.place.c_str());
    }
    return result == 0 ? std::error_code() : lastError();
}

void OutputFile::require(std::error_code error) const {
    if (error) {
        throw Failure(outputFault(shownName(target_), error));
    }
}

void printOutput(std::string_view text, const std::string& input) {
    OutputFile output(outputTarget("-", input, true));
    output.commit(output.write(text));
}

} // namespace corvane
