// Files: the plug-in's only door to the file system.
//
// Operations on an open record raise exceptions; operations on names return the toolbox's result.
#pragma once

#include "host/files.h"
#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

struct FileRecord {
    std::int16_t volume = 0;
    std::int16_t mode = 0;         ///< 0 read, 1 write, 2 append
    std::int16_t dataRef = 0;      ///< 0: not open
    std::int16_t resourceRef = -1; ///< -1: not open
};
static_assert(sizeof(FileRecord) == 8);

/// Longest name that `openFile` takes, in bytes.
inline constexpr std::size_t longestFileName = 1024;

/// Opens the data fork of `name` in `volume`. Mode "read", "write" or "append". "write" makes the
/// file, only where none of that name exists, with type "PDF " and creator "CVRN"; "append" stands
/// at the end. Raises `type` for another mode or a name of 1,025 bytes or more, `access` where the
/// file is locked, protected or in use, `io` for any other failure.
void openFile(FileRecord& file, std::int16_t volume, std::string_view name, std::string_view mode);

/// Closes the data fork and clears the record, also where closing raises (`io`). Nothing where it
/// is not open.
void closeFile(FileRecord& file);
/// The same without asking how it went, for destructors.
void dropFile(FileRecord& file) noexcept;

/// Reads at the mark; the number of bytes read, fewer than asked for only at the end of the file.
/// Raises `access` where the record is not open in mode "read", `io` where reading fails.
std::int32_t readFile(FileRecord& file, std::span<std::byte> buffer);

/// Writes at the mark. Raises `access` in mode "read", `diskFull`, `io`.
std::int32_t writeFile(FileRecord& file, std::span<const std::byte> buffer);

/// The mark. Raises `io`.
std::int32_t markFile(const FileRecord& file);

/// Moves the mark, a negative position counting from the end of the file; the new mark. Raises `io`
/// where that is outside the file.
std::int32_t seekFile(FileRecord& file, std::int32_t position);

/// The length in bytes. Raises `io`.
std::int32_t lengthFile(const FileRecord& file);

/// Cuts off or extends the file at `length`. Raises `io`.
void backupFile(FileRecord& file, std::int32_t length);

/// Puts what was written on the disk. Raises `diskFull`, `io`.
void flushFile(FileRecord& file);

/// Open and close the resource fork of a file in the record's volume. Raise `io`. `pushFile` makes
/// the fork where a file is written without one.
void pushFile(FileRecord& file, std::string_view name);
void tossFile(FileRecord& file);

/// The resource of that type and name, or and id where the name is empty, in the resource fork
/// opened last; null where there is none.
Handle loadFile(std::uint32_t type, std::int16_t id, std::string_view name = {});

/// Adds a resource to the resource fork opened last, which takes the handle over. Raises `io`.
void saveFile(Handle data, std::uint32_t type, std::int16_t id, std::string_view name = {});

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
