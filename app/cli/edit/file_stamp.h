// Which file a name leads to, and in which state it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::int64_t length = 0;
    std::int64_t seconds = 0; ///< of its last change
    std::int64_t nanoseconds = 0;

    bool operator==(const FileStamp&) const = default;
};

/// None where there is no such file.
std::optional<FileStamp> stampOf(const std::string& path);

} // namespace corvane
