#include "toolbox/resource_files.h"

#include "host/memory.h"
#include "toolbox/apple_double.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace corvane {

namespace {

// What an AppleDouble file may hold that is worth reading into memory.
constexpr std::int32_t largestContainer = 64 << 20;

bool matches(std::uint32_t type, std::int16_t id, std::string_view name, const ResourceKey& key) {
    return type == key.type && (key.name.empty() ? id == key.id : name == key.name);
}

OSErr load(std::span<const std::byte> bytes, Handle& handle) {
    return handle ? noErr
                  : PtrToHand(bytes.data(), &handle, static_cast<std::int32_t>(bytes.size()));
}

OSErr readAll(FileTable& files, std::int16_t reference, std::vector<std::byte>& bytes) {
    std::int32_t length = 0;
    if (const OSErr error = files.length(reference, length); error != noErr) {
        return error;
    }
    if (length > largestContainer) {
        return mapReadErr;
    }
    bytes.resize(static_cast<std::size_t>(length));
    std::int32_t start = 0;
    return files.read(reference, fsFromStart, start, bytes.data(), length);
}

OSErr writeAll(FileTable& files, std::int16_t reference, std::span<const std::byte> bytes) {
    auto count = static_cast<std::int32_t>(bytes.size());
    std::int32_t start = 0;
    const OSErr error = files.write(reference, fsFromStart, start, bytes.data(), count);
    return error != noErr ? error : files.setLength(reference, count);
}

/// A container with nothing in it but room for what belongs there.
std::vector<std::byte> emptyContainer() {
    const std::array<std::byte, 32> finderInfo{};
    const std::array entries{AppleDoubleEntry{AppleDoubleId::finderInfo, finderInfo}};
    return buildAppleDouble(entries);
}

} // namespace

void ResourceFiles::addSource(std::span<const StaticResource> table) {
    sources_.push_back({table, std::vector<Handle>(table.size())});
}

void ResourceFiles::removeSource(std::span<const StaticResource> table) {
    const auto found = std::find_if(sources_.begin(), sources_.end(), [&](const Source& source) {
        return source.table.data() == table.data();
    });
    if (found != sources_.end()) {
        std::for_each(found->handles.begin(), found->handles.end(), DisposeHandle);
        sources_.erase(found);
    }
}

OSErr ResourceFiles::create(FileTable& files, const std::string& path) {
    if (const OSErr error = FileTable::create(path); error != noErr && error != dupFNErr) {
        return error;
    }
    const std::string fork = appleDoublePath(path);
    if (const OSErr error = FileTable::create(fork); error != noErr) {
        return error;
    }
    std::int16_t reference = 0;
    OSErr error = files.open(fork, fsRdWrPerm, reference);
    if (error == noErr) {
        error = writeAll(files, reference, emptyContainer());
        const OSErr closing = files.close(reference);
        error = error != noErr ? error : closing;
    }
    if (error != noErr) {
        FileTable::remove(fork);
    }
    return error;
}

void ResourceFiles::remove(FileTable& files, const std::string& path) {
    const std::string fork = appleDoublePath(path);
    std::int16_t reference = 0;
    if (files.open(fork, fsRdPerm, reference) == noErr) {
        std::array<std::byte, 32> start{};
        std::int32_t position = 0;
        auto count = static_cast<std::int32_t>(start.size());
        files.read(reference, fsFromStart, position, start.data(), count);
        files.close(reference);
        if (isAppleDouble(start)) {
            FileTable::remove(fork);
        }
    }
}

OSErr ResourceFiles::open(FileTable& files, const std::string& path, std::int8_t permission,
                          std::int16_t& reference) {
    const OSErr opened = files.open(appleDoublePath(path), permission, reference);
    if (opened != noErr) {
        return opened;
    }
    File file{.reference = reference,
              .writable = permission != fsRdPerm,
              .container = {},
              .resources = {}};
    OSErr error = readAll(files, reference, file.container);
    const auto entries = parseAppleDouble(file.container);
    error = error == noErr && !entries ? mapReadErr : error;
    if (error == noErr) {
        for (const AppleDoubleEntry& entry : *entries) {
            if (entry.id != AppleDoubleId::resourceFork) {
                continue;
            }
            auto records = parseResourceFork(entry.bytes);
            if (!records) {
                error = mapReadErr;
                break;
            }
            for (ResourceRecord& record : *records) {
                file.resources.push_back({.record = std::move(record), .handle = {}, .own = {}});
            }
        }
    }
    if (error != noErr) {
        files.close(reference);
        reference = 0;
        return error;
    }
    files_.push_back(std::move(file));
    return noErr;
}

OSErr ResourceFiles::close(FileTable& files, std::int16_t reference) {
    const auto file = std::find_if(files_.begin(), files_.end(),
                                   [&](const File& other) { return other.reference == reference; });
    if (file == files_.end()) {
        return resFNotFound;
    }
    OSErr error = noErr;
    for (Resource& resource : file->resources) {
        if (resource.unwritten && error == noErr) {
            error = store(files, *file, resource);
        }
        DisposeHandle(resource.handle);
    }
    files_.erase(file);
    const OSErr closing = files.close(reference);
    return error != noErr ? error : closing;
}

OSErr ResourceFiles::get(const ResourceKey& key, bool newestOnly, Handle& handle) {
    handle = {};
    for (auto file = files_.rbegin(); file != files_.rend(); ++file) {
        for (Resource& resource : file->resources) {
            const ResourceRecord& record = resource.record;
            if (matches(record.type, record.id, record.name, key)) {
                const OSErr error = load(record.bytes, resource.handle);
                handle = resource.handle;
                return error;
            }
        }
        if (newestOnly) {
            return resNotFound;
        }
    }
    for (Source& source : sources_) {
        for (std::size_t row = 0; row < source.table.size(); ++row) {
            const StaticResource& resource = source.table[row];
            if (matches(resource.type, resource.id, resource.name, key)) {
                const OSErr error = load(resource.bytes, source.handles[row]);
                handle = source.handles[row];
                return error;
            }
        }
    }
    return resNotFound;
}

std::span<const std::byte> ResourceFiles::find(std::uint32_t type, std::int16_t id) const {
    const ResourceKey key{type, id, {}};
    for (auto file = files_.rbegin(); file != files_.rend(); ++file) {
        for (const Resource& resource : file->resources) {
            if (matches(resource.record.type, resource.record.id, {}, key)) {
                return resource.record.bytes;
            }
        }
    }
    for (const Source& source : sources_) {
        for (const StaticResource& resource : source.table) {
            if (matches(resource.type, resource.id, {}, key)) {
                return resource.bytes;
            }
        }
    }
    return {};
}

ResourceFiles::Place ResourceFiles::placeOf(Handle handle) {
    for (File& file : files_) {
        for (Resource& resource : file.resources) {
            if (handle && resource.handle == handle) {
                return {&file, &resource};
            }
        }
    }
    return {};
}

OSErr ResourceFiles::add(Handle handle, ResourceKey key) {
    if (!handle || files_.empty() || placeOf(handle).resource != nullptr) {
        return addResFailed;
    }
    File& file = files_.back();
    if (!file.writable) {
        return wrPermErr;
    }
    file.resources.push_back({
        .record = {.type = key.type, .id = key.id, .name = std::move(key.name), .bytes = {}},
        .handle = handle,
        .own = {},
        .unwritten = true,
    });
    return noErr;
}

OSErr ResourceFiles::write(FileTable& files, Handle handle) {
    const Place place = placeOf(handle);
    if (place.resource == nullptr) {
        return resNotFound;
    }
    return place.file->writable ? store(files, *place.file, *place.resource) : wrPermErr;
}

OSErr ResourceFiles::store(FileTable& files, File& file, Resource& resource) {
    const auto size = static_cast<std::size_t>(GetHandleSize(resource.handle));
    const std::span<const std::byte> bytes((*resource.handle).get(), size);
    resource.own.assign(bytes.begin(), bytes.end());
    resource.record.bytes = resource.own;
    resource.unwritten = false;
    return writeContainer(files, file);
}

OSErr ResourceFiles::writeContainer(FileTable& files, const File& file) {
    std::vector<ResourceRecord> records;
    for (const Resource& resource : file.resources) {
        if (!resource.unwritten) {
            records.push_back(resource.record);
        }
    }
    const auto fork = buildResourceFork(records);
    if (!fork) {
        return addResFailed;
    }
    // What other programs keep in the container stays.
    auto entries = parseAppleDouble(file.container).value_or(std::vector<AppleDoubleEntry>());
    std::erase_if(entries, [](const AppleDoubleEntry& entry) {
        return entry.id == AppleDoubleId::resourceFork;
    });
    entries.push_back({AppleDoubleId::resourceFork, *fork});
    return writeAll(files, file.reference, buildAppleDouble(entries));
}

OSErr ResourceFiles::release(Handle handle) {
    if (const Place place = placeOf(handle); place.resource != nullptr) {
        place.resource->handle = {};
        if (place.resource->unwritten) {
            std::erase_if(place.file->resources, [](const Resource& resource) {
                return resource.unwritten && !resource.handle;
            });
        }
        DisposeHandle(handle);
        return noErr;
    }
    for (Source& source : sources_) {
        const auto found = std::find(source.handles.begin(), source.handles.end(), handle);
        if (handle && found != source.handles.end()) {
            DisposeHandle(std::exchange(*found, {}));
            return noErr;
        }
    }
    return resNotFound;
}

} // namespace corvane
