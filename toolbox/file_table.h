// Open files by reference number. A file's mark is kept here, so that a read is one positioned
// read and nothing else.
#pragma once

#include "host/files.h"
#include "toolbox/descriptor.h"
#include "toolbox/file_locks.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// For tests: when files fail.
struct FileFaults {
    static constexpr std::int64_t never = -1;

    std::int64_t room = never; ///< bytes that may still be written; then the disk is full
    int flushes = -1;          ///< flushes that still succeed; the next one fails, once
    bool truncates = false;    ///< making a file longer or shorter fails
};

class FileTable {
public:
    FileTable();

    FileFaults faults;

    /// Makes an empty file where there is nothing of that name; `dupFNErr`.
    static OSErr create(const std::string& path);

    /// Takes a file, or a link to one, away; folders are `notAFileErr`.
    static OSErr remove(const std::string& path);

    OSErr open(const std::string& path, std::int8_t permission, std::int16_t& reference);
    OSErr close(std::int16_t reference);

    /// `position` counts from what `mode` says and becomes the new mark; `count` is what was asked
    /// for and becomes what was moved.
    OSErr read(std::int16_t reference, std::int16_t mode, std::int32_t& position, std::byte* buffer,
               std::int32_t& count);
    OSErr write(std::int16_t reference, std::int16_t mode, std::int32_t& position,
                const std::byte* buffer, std::int32_t& count);

    OSErr mark(std::int16_t reference, std::int32_t& position);
    OSErr setMark(std::int16_t reference, std::int16_t mode, std::int32_t& position);
    OSErr length(std::int16_t reference, std::int32_t& length);
    OSErr setLength(std::int16_t reference, std::int32_t length);
    OSErr flush(std::int16_t reference);

    /// The lock of a host, see `lockFile`.
    OSErr lock(const std::string& path, std::int32_t& lock);
    void unlock(std::int32_t lock);

private:
    struct File {
        Descriptor descriptor;
        FileIdentity identity;
        bool readable = false;
        bool writable = false;
        bool exclusive = false; // opened to be the only writer
        bool regular = true;    // no device, so that locks mean something
        bool claimed = false;   // holds a claim on the file
        std::int64_t mark = 0;
        std::int64_t length = 0; // when last seen; the file may have changed since
    };

    File* find(std::int16_t reference);
    OSErr share(File& file);
    OSErr claim(File& file);
    OSErr beforeChange(File& file);
    bool inUse(FileIdentity identity, bool wantsExclusive) const;
    OSErr refreshLength(File& file);
    OSErr resolve(File& file, std::int16_t mode, std::int32_t offset, std::int64_t& position);

    std::vector<std::optional<File>> files_; // by reference; 0 is never one
    FileLocks locks_;
    std::map<std::int32_t, FileIdentity> hostLocks_;
    std::int32_t lastLock_ = 0;
};

} // namespace corvane
