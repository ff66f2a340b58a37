#include "toolbox/file_table.h"

#include "toolbox/result_codes.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::size_t openLimit = 1024; // references are 16-bit, descriptors are scarce
constexpr std::int64_t longestFile = INT32_MAX;
constexpr std::int16_t positionModeMask = 3;
static_assert(sizeof(off_t) == 8);

int flagsOf(std::int8_t permission) {
    switch (permission) {
    case fsRdPerm:
        return O_RDONLY;
    case fsWrPerm:
        return O_WRONLY;
    default:
        return O_RDWR;
    }
}

/// Opens without ever waiting for another process.
Descriptor openPath(const std::string& path, int flags) {
    int number = -1;
    do {
        number = ::open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

FileIdentity identityOf(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

/// Moves bytes until all are moved, nothing moves any more, or `step` fails.
template <class Step>
OSErr moveAll(std::int32_t& count, Step step) {
    std::int32_t moved = 0;
    OSErr error = noErr;
    while (moved < count) {
        const ssize_t now = step(moved, count - moved);
        if (now > 0) {
            moved += static_cast<std::int32_t>(now);
        } else if (now == 0) {
            break;
        } else if (errno != EINTR) {
            error = lastResult();
            break;
        }
    }
    count = moved;
    return error;
}

} // namespace

FileTable::FileTable() : files_(1) {}

OSErr FileTable::create(const std::string& path) {
    return openPath(path, O_WRONLY | O_CREAT | O_EXCL) ? noErr : lastResult();
}

OSErr FileTable::remove(const std::string& path) {
    return unlink(path.c_str()) == 0 ? noErr : lastResult();
}

FileTable::File* FileTable::find(std::int16_t reference) {
    const auto index = static_cast<std::size_t>(reference);
    return reference > 0 && index < files_.size() && files_[index] ? &*files_[index] : nullptr;
}

OSErr FileTable::open(const std::string& path, std::int8_t permission, std::int16_t& reference) {
    reference = 0;
    if (permission == 0) {
        const OSErr error = open(path, fsRdWrPerm, reference);
        return error == noErr ? noErr : open(path, fsRdPerm, reference);
    }
    if (permission < fsRdPerm || permission > fsRdWrShPerm) {
        return paramErr;
    }
    File file;
    file.descriptor = openPath(path, flagsOf(permission));
    struct stat status;
    if (!file.descriptor || fstat(file.descriptor.number(), &status) != 0) {
        return lastResult();
    }
    const bool device = S_ISCHR(status.st_mode) && permission == fsWrPerm;
    if (!S_ISREG(status.st_mode) && !device) {
        return notAFileErr;
    }
    if (status.st_size > longestFile) {
        return fileBoundsErr;
    }
    file.identity = identityOf(status);
    file.readable = permission != fsWrPerm;
    file.writable = permission != fsRdPerm;
    file.regular = !device;
    file.exclusive = permission != fsRdPerm && permission != fsRdWrShPerm && file.regular;
    file.length = status.st_size;
    if (file.writable && file.regular) {
        if (const OSErr error = share(file); error != noErr) {
            return error;
        }
    }
    auto slot = std::find(files_.begin() + 1, files_.end(), std::nullopt);
    if (slot == files_.end()) {
        if (files_.size() == openLimit) {
            return tmfoErr;
        }
        slot = files_.emplace(slot);
    }
    reference = static_cast<std::int16_t>(slot - files_.begin());
    slot->emplace(std::move(file));
    return noErr;
}

/// Comes to terms with the other users of the file, of this process and of others.
OSErr FileTable::share(File& file) {
    if (inUse(file.identity, file.exclusive)) {
        return opWrErr;
    }
    return file.exclusive ? claim(file) : locks_.test(file.descriptor.number(), file.identity);
}

/// Is the file opened here in a way that another writer would disturb?
bool FileTable::inUse(FileIdentity identity, bool wantsExclusive) const {
    return std::any_of(files_.begin(), files_.end(), [&](const std::optional<File>& other) {
        return other && other->identity == identity &&
               (other->exclusive || (wantsExclusive && other->claimed));
    });
}

OSErr FileTable::claim(File& file) {
    const OSErr error = locks_.claim(file.descriptor.number(), file.identity);
    file.claimed = error == noErr;
    return error;
}

/// A file opened to share becomes ours with its first change.
OSErr FileTable::beforeChange(File& file) {
    if (!file.writable) {
        return wrPermErr;
    }
    return file.claimed || !file.regular ? noErr : claim(file);
}

OSErr FileTable::close(std::int16_t reference) {
    File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    if (file->claimed) {
        locks_.release(file->identity);
    }
    // Linux gives the number back even where closing reports that it was interrupted.
    const bool closed = file->descriptor.close() || errno == EINTR;
    const OSErr error = closed ? noErr : lastResult();
    files_[static_cast<std::size_t>(reference)].reset();
    return error;
}

OSErr FileTable::refreshLength(File& file) {
    struct stat status;
    if (fstat(file.descriptor.number(), &status) != 0) {
        return lastResult();
    }
    if (status.st_size > longestFile) {
        return fileBoundsErr;
    }
    file.length = status.st_size;
    return noErr;
}

OSErr FileTable::resolve(File& file, std::int16_t mode, std::int32_t offset,
                         std::int64_t& position) {
    switch (mode & positionModeMask) {
    case fsFromStart:
        position = offset;
        break;
    case fsFromLEOF:
        if (const OSErr error = refreshLength(file); error != noErr) {
            return error;
        }
        position = file.length + offset;
        break;
    case fsFromMark:
        position = file.mark + offset;
        break;
    default:
        position = file.mark;
    }
    if (position < 0) {
        return posErr;
    }
    return position > longestFile ? fileBoundsErr : noErr;
}

OSErr FileTable::read(std::int16_t reference, std::int16_t mode, std::int32_t& position,
                      std::byte* buffer, std::int32_t& count) {
    const std::int32_t wanted = std::exchange(count, 0);
    File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    if (wanted < 0 || (buffer == nullptr && wanted > 0)) {
        return paramErr;
    }
    if (!file->readable) {
        return permErr;
    }
    std::int64_t start = 0;
    if (const OSErr error = resolve(*file, mode, position, start); error != noErr) {
        return error;
    }
    count = static_cast<std::int32_t>(std::min(std::int64_t{wanted}, longestFile - start));
    const OSErr error = moveAll(count, [&](std::int32_t moved, std::int32_t left) {
        return pread(file->descriptor.number(), buffer + moved, static_cast<std::size_t>(left),
                     start + moved);
    });
    file->mark = start + count;
    position = static_cast<std::int32_t>(file->mark);
    if (error != noErr) {
        return error;
    }
    return count < wanted ? eofErr : noErr;
}

OSErr FileTable::write(std::int16_t reference, std::int16_t mode, std::int32_t& position,
                       const std::byte* buffer, std::int32_t& count) {
    const std::int32_t wanted = std::exchange(count, 0);
    File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    if (wanted < 0 || (buffer == nullptr && wanted > 0)) {
        return paramErr;
    }
    std::int64_t start = 0;
    if (const OSErr error = resolve(*file, mode, position, start); error != noErr) {
        return error;
    }
    if (start + wanted > longestFile) {
        return fileBoundsErr;
    }
    if (const OSErr error = beforeChange(*file); error != noErr) {
        return error;
    }
    count = wanted;
    if (faults.room != FileFaults::never) {
        count = static_cast<std::int32_t>(std::min<std::int64_t>(count, faults.room));
        faults.room -= count;
    }
    const OSErr error = moveAll(count, [&](std::int32_t moved, std::int32_t left) {
        return pwrite(file->descriptor.number(), buffer + moved, static_cast<std::size_t>(left),
                      start + moved);
    });
    file->mark = start + count;
    file->length = std::max(file->length, file->mark);
    position = static_cast<std::int32_t>(file->mark);
    if (error != noErr) {
        return error;
    }
    return count < wanted ? dskFulErr : noErr;
}

OSErr FileTable::mark(std::int16_t reference, std::int32_t& position) {
    const File* file = find(reference);
    position = file != nullptr ? static_cast<std::int32_t>(file->mark) : 0;
    return file != nullptr ? noErr : rfNumErr;
}

OSErr FileTable::setMark(std::int16_t reference, std::int16_t mode, std::int32_t& position) {
    File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    std::int64_t target = 0;
    if (const OSErr error = resolve(*file, mode, position, target); error != noErr) {
        return error;
    }
    if (target > file->length) {
        if (const OSErr error = refreshLength(*file); error != noErr) {
            return error;
        }
    }
    file->mark = std::min(target, file->length);
    position = static_cast<std::int32_t>(file->mark);
    return target > file->length ? eofErr : noErr;
}

OSErr FileTable::length(std::int16_t reference, std::int32_t& length) {
    length = 0;
    File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    if (const OSErr error = refreshLength(*file); error != noErr) {
        return error;
    }
    length = static_cast<std::int32_t>(file->length);
    return noErr;
}

OSErr FileTable::setLength(std::int16_t reference, std::int32_t length) {
    File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    if (length < 0) {
        return paramErr;
    }
    if (const OSErr error = beforeChange(*file); error != noErr) {
        return error;
    }
    if (faults.truncates) {
        return ioErr;
    }
    while (ftruncate(file->descriptor.number(), length) != 0) {
        if (errno != EINTR) {
            return lastResult();
        }
    }
    file->length = length;
    file->mark = std::min(file->mark, file->length);
    return noErr;
}

OSErr FileTable::flush(std::int16_t reference) {
    const File* file = find(reference);
    if (file == nullptr) {
        return rfNumErr;
    }
    if (faults.flushes >= 0 && faults.flushes-- == 0) {
        return ioErr;
    }
    while (fsync(file->descriptor.number()) != 0) {
        if (errno != EINTR) {
            return lastResult();
        }
    }
    return noErr;
}

OSErr FileTable::lock(const std::string& path, std::int32_t& lock) {
    lock = 0;
    const Descriptor descriptor = openPath(path, O_RDWR);
    struct stat status;
    if (!descriptor || fstat(descriptor.number(), &status) != 0) {
        return lastResult();
    }
    if (!S_ISREG(status.st_mode)) {
        return notAFileErr;
    }
    const FileIdentity identity = identityOf(status);
    if (const OSErr error = locks_.claim(descriptor.number(), identity); error != noErr) {
        return error;
    }
    lock = ++lastLock_;
    hostLocks_.emplace(lock, identity);
    return noErr;
}

void FileTable::unlock(std::int32_t lock) {
    if (const auto found = hostLocks_.find(lock); found != hostLocks_.end()) {
        locks_.release(found->second);
        hostLocks_.erase(found);
    }
}

} // namespace corvane
