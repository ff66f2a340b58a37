// Directories by number: directory ids, working directories, the default volume, and aliases of
// file names that the classic calls cannot say.
#pragma once

#include "host/files.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace corvane {

class Directories {
public:
    Directories();

    /// The id of a directory, given by its absolute path without "." , ".." and links.
    std::int32_t idOf(const std::string& path);

    /// The path of a directory id; null where there is none.
    const std::string* pathOf(std::int32_t id) const;

    /// The directory that a pair of volume and directory id means, 0 standing for the default;
    /// `nsvErr`, `dirNFErr`.
    OSErr find(std::int16_t volume, std::int32_t directory, std::int32_t& id) const;

    /// The path of the file that `name` means in that directory, aliases resolved. The file need
    /// not exist. `bdNamErr` for a name that would leave the directory.
    OSErr locate(std::int16_t volume, std::int32_t directory, std::string_view name,
                 std::string& path) const;

    OSErr openWorking(std::int16_t volume, std::int32_t directory, std::int32_t owner,
                      std::int16_t& reference);

    OSErr setDefault(std::int16_t volume);

    /// A name of at most 63 bytes without ":" for the file `name` of the directory.
    std::string sayable(std::int32_t directory, const std::string& name);

private:
    struct Working {
        std::int32_t directory;
        std::int32_t owner;
    };

    std::string realName(std::int32_t directory, std::string_view name) const;
    const Working* working(std::int16_t reference) const;

    std::vector<std::string> paths_; // by id, from the root's on
    std::unordered_map<std::string, std::int32_t> ids_;
    std::vector<Working> working_; // by reference, from `firstWorking` up
    std::int16_t default_ = wholeMachine;
    std::map<std::pair<std::int32_t, std::string>, std::string> realNames_; // by alias
    std::map<std::pair<std::int32_t, std::string>, std::string> aliases_;   // by real name
};

} // namespace corvane
