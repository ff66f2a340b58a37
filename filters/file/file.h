// Files: the plug-in's only door to the file system. Here the data fork, whose failures raise; the
// resource fork is in file_resources.h, what is done to names in file_names.h.
#pragma once

#include "host/files.h"

#include <cstddef>
#include <cstdint>
#include <span>
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

} // namespace corvane
