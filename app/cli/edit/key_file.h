// Files of groups and keys, as desktops write them: "[Group]", then lines of "Key=value".
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class KeyFile {
public:
    /// None where there is no regular file that can be read, or it has more than a megabyte: nobody
    /// writes such a file by hand.
    static std::optional<KeyFile> read(const std::string& path);

    explicit KeyFile(std::string_view text);

    /// The value as it is written; empty where there is none.
    std::string_view value(std::string_view group, std::string_view key) const;
    /// The parts of a value between semicolons, but for empty ones.
    std::vector<std::string> list(std::string_view group, std::string_view key) const;
    bool isTrue(std::string_view group, std::string_view key) const;

private:
    using Group = std::map<std::string, std::string, std::less<>>;
    std::map<std::string, Group, std::less<>> groups_;
};

/// A value of the kind "string": \s, \n, \t, \r and \\ are what they stand for.
std::string unescaped(std::string_view value);

} // namespace corvane
