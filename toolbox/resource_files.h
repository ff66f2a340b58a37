// Resources by type and id: open resource forks, the newest first, and compiled tables.
#pragma once

#include "host/resources.h"
#include "toolbox/file_table.h"
#include "toolbox/resource_fork.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Which resource is meant: by id, or by name where that is not empty.
struct ResourceKey {
    std::uint32_t type = 0;
    std::int16_t id = 0;
    std::string name;
};

class ResourceFiles {
public:
    void addSource(std::span<const StaticResource> table);
    void removeSource(std::span<const StaticResource> table);

    /// Gives the file at `path` an empty fork, and makes it where there is none; `dupFNErr`.
    OSErr create(FileTable& files, const std::string& path);

    /// Takes the fork of the file at `path` away, if what looks like one is one.
    static void remove(FileTable& files, const std::string& path);

    OSErr open(FileTable& files, const std::string& path, std::int8_t permission,
               std::int16_t& reference);
    OSErr close(FileTable& files, std::int16_t reference);

    /// The handle of a resource, read where it is not yet; `newestOnly` keeps to the file opened
    /// last.
    OSErr get(const ResourceKey& key, bool newestOnly, Handle& handle);

    /// The bytes of a resource as last written; none where there is none.
    std::span<const std::byte> find(std::uint32_t type, std::int16_t id) const;

    OSErr add(Handle handle, ResourceKey key);
    OSErr write(FileTable& files, Handle handle);
    OSErr release(Handle handle);

    OSErr lastError = noErr; ///< what `ResError` answers

private:
    struct Resource {
        ResourceRecord record;
        Handle handle;              // null: not read
        std::vector<std::byte> own; // what `record.bytes` is once it was written here
        bool unwritten = false;
    };
    struct File {
        std::int16_t reference = 0;
        bool writable = false;
        std::vector<std::byte> container; // as read
        std::vector<Resource> resources;
    };
    struct Source {
        std::span<const StaticResource> table;
        std::vector<Handle> handles; // by row; null: not read
    };
    struct Place {
        File* file = nullptr;
        Resource* resource = nullptr;
    };

    Place placeOf(Handle handle);
    OSErr store(FileTable& files, File& file, Resource& resource);
    static OSErr writeContainer(FileTable& files, const File& file);

    std::vector<File> files_; // in the order in which they were opened
    std::vector<Source> sources_;
};

} // namespace corvane
