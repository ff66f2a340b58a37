#include "app/cli/files/input_file.h"

#include "app/cli/fault.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

constexpr std::int64_t longestFile = INT32_MAX; // positions in a file have 32 bits

} // namespace

void refuseFile(const std::string& reason) {
    throw Failure({code::access, "the file cannot be opened (" + reason +
                                     "); check its name, where it lies and its permissions"});
}

bool isThere(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 || errno != ENOENT;
}

const std::string& requireReadable(const std::string& path) {
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0 || access(path.c_str(), R_OK) != 0) {
        refuseFile(lastError().message());
    }
    if (!S_ISREG(facts.st_mode)) {
        refuseFile(S_ISDIR(facts.st_mode) ? "it is a folder" : "it is not a regular file");
    }
    if (facts.st_size > longestFile) {
        throw Failure({code::io, "the file is longer than 2,147,483,647 bytes, which is more than "
                                 "this program takes; split it with another PDF program"});
    }
    return path;
}

const std::string& requireWritable(const std::string& path) {
    requireReadable(path);
    if (access(path.c_str(), W_OK) != 0) {
        throw Failure({code::access, "the file cannot be changed (" + lastError().message() +
                                         "); check its permissions, or save into a copy with "
                                         "--output"});
    }
    return path;
}

void requireExpected(const Arguments& arguments) {
    if (!arguments.expectedSize) {
        return;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(arguments.file, error);
    if (error) {
        refuseFile(error.message());
    }
    if (std::cmp_not_equal(size, *arguments.expectedSize)) {
        throw Failure(
            {code::fileChanged, "the file has " + std::to_string(size) + " bytes and not " +
                                    std::to_string(*arguments.expectedSize) +
                                    ": another program changed it, so it was left as it is"});
    }
}

} // namespace corvane
