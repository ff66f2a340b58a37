// Files and folders by name. But for `uniqueFile` nothing raises: the toolbox's result is returned.
#pragma once

#include "host/files.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// The first name, of `pattern` with "0", "1", ... for its first "^0", that no file in `volume`
/// has. Raises `type` where the pattern has no "^0" and its name is taken.
std::string uniqueFile(std::int16_t volume, std::string_view pattern);

/// Stamps a file with its type and creator and, where asked, with the custom-icon flag.
OSErr finishFile(std::int16_t volume, std::string_view name, std::uint32_t type,
                 std::uint32_t creator, bool customIcon);

OSErr deleteFile(std::int16_t volume, std::string_view name);

/// Makes a folder in `directory`; both references become the new folder's. Where the name is taken
/// or impossible it beeps and leaves them alone; where the volume refuses the result is 18.
OSErr newDirFile(std::int16_t& volume, std::int32_t& directory, std::string_view name);

/// The working directory that stands for `directory`; 0 where there is none.
std::int16_t workingDirRef(std::int16_t volume, std::int32_t directory);

/// Puts the folder's path, from the volume's name on, each name followed by ":", in front of
/// `path`. Returns 2 when the root was reached, else the toolbox's result.
std::int16_t PathNameFromDirID(std::int32_t directory, std::int16_t volume, std::string& path);

} // namespace corvane
