// Keeps other programs from saving into a file for a while.
#pragma once

#include <cstdint>
#include <string>

namespace corvane {

class FileLock {
public:
    enum class Need : std::uint8_t {
        always,
        ifPossible, ///< a file that may only be read is used without a lock
    };

    /// Raises `Failure` where another program is saving into the file, or it cannot be locked.
    explicit FileLock(const std::string& path, Need need = Need::always);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    std::int32_t lock_ = 0;
};

} // namespace corvane
