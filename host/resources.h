// The resource calls of the toolbox.
//
// Resources come from two places: resource forks, which live in AppleDouble files "._name" beside
// their file, and tables that are compiled into the plug-in. A handle that was read stays the
// resource's until it is released; reading again gives the same handle.
#pragma once

#include "host/files.h"
#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

inline constexpr OSErr resNotFound = -192;  ///< no such resource
inline constexpr OSErr resFNotFound = -193; ///< no such resource file
inline constexpr OSErr addResFailed = -194; ///< not a handle, no file to add to, or fork too large
inline constexpr OSErr mapReadErr = -199;   ///< the fork is not a resource fork

/// A resource compiled into a program. Name and bytes must outlive their registration.
struct StaticResource {
    std::uint32_t type = 0; ///< four characters
    std::int16_t id = 0;
    std::string_view name;
    std::span<const std::byte> bytes;
};

/// Registers a table, searched after the open resource files and after the tables before it.
/// Removing it disposes of every handle that was read from it.
TOOLBOX_CALL void addResourceSource(std::span<const StaticResource> table);
TOOLBOX_CALL void removeResourceSource(std::span<const StaticResource> table);

/// A table that is registered while this object lives.
class ResourceSource {
public:
    explicit ResourceSource(std::span<const StaticResource> table) : table_(table) {
        addResourceSource(table_);
    }
    ~ResourceSource() { removeResourceSource(table_); }
    ResourceSource(const ResourceSource&) = delete;
    ResourceSource& operator=(const ResourceSource&) = delete;

private:
    std::span<const StaticResource> table_;
};

/// Result of the resource call before.
TOOLBOX_CALL OSErr ResError();

/// Null where there is none (`resNotFound`). All open resource files are searched, the newest
/// first, then the tables.
TOOLBOX_CALL Handle GetResource(std::uint32_t type, std::int16_t id);

/// As `GetResource`, only in the resource file opened last; in the tables where none is open.
/// `name` is length-prefixed.
TOOLBOX_CALL Handle Get1Resource(std::uint32_t type, std::int16_t id);
TOOLBOX_CALL Handle Get1NamedResource(std::uint32_t type, const std::uint8_t* name);

/// Makes `data` a resource of the file opened last. The file then owns the handle.
TOOLBOX_CALL void AddResource(Handle data, std::uint32_t type, std::int16_t id,
                              const std::uint8_t* name);

/// Writes an added or changed resource into its file.
TOOLBOX_CALL void WriteResource(Handle resource);

/// Disposes of the handle; the resource stays in its file as it was last written.
TOOLBOX_CALL void ReleaseResource(Handle resource);

/// Gives the file of the default volume an empty resource fork; makes the file where there is none.
/// A fork that exists is left alone (`dupFNErr`).
TOOLBOX_CALL void CreateResFile(const std::uint8_t* name);

/// Opens a resource fork; its reference number, or -1. Permissions as of `PBOpenSync`.
TOOLBOX_CALL std::int16_t OpenRFPerm(const std::uint8_t* name, std::int16_t volume,
                                     std::int8_t permission);

/// Disposes of all handles of the file and closes it.
TOOLBOX_CALL void CloseResFile(std::int16_t reference);

/// Copies entry `index`, from 1, of the string list ("STR#") `list` to `text`, which has room for
/// 256 bytes; the empty string where there is none. Length-prefixed.
TOOLBOX_CALL void GetIndString(std::uint8_t* text, std::int16_t list, std::int16_t index);

} // namespace corvane
