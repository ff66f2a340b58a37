#include "toolbox/file_locks.h"

#include "toolbox/result_codes.h"

#include <cerrno>
#include <fcntl.h>

namespace corvane {

namespace {

struct flock wholeFile(short type) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return lock;
}

/// Some file systems know no locks; their files are used without.
bool locksUnknown(int error) {
    return error == EINVAL || error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP;
}

OSErr setLock(int descriptor, short type) {
    struct flock lock = wholeFile(type);
    if (fcntl(descriptor, F_OFD_SETLK, &lock) == 0 || locksUnknown(errno)) {
        return noErr;
    }
    return errno == EACCES ? opWrErr : lastResult();
}

} // namespace

OSErr FileLocks::claim(int descriptor, FileIdentity file) {
    if (const auto found = claims_.find(file); found != claims_.end()) {
        ++found->second.owners;
        return noErr;
    }
    // The claim may outlive the file that it was made with, so it has a descriptor of its own.
    Descriptor own(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!own) {
        return lastResult();
    }
    const OSErr error = setLock(own.number(), F_WRLCK);
    if (error == noErr) {
        claims_.emplace(file, Claim{std::move(own), 1});
    }
    return error;
}

void FileLocks::release(FileIdentity file) {
    const auto found = claims_.find(file);
    if (found != claims_.end() && --found->second.owners == 0) {
        setLock(found->second.descriptor.number(), F_UNLCK);
        claims_.erase(found);
    }
}

OSErr FileLocks::test(int descriptor, FileIdentity file) const {
    if (claims_.contains(file)) {
        return noErr;
    }
    struct flock lock = wholeFile(F_WRLCK);
    if (fcntl(descriptor, F_OFD_GETLK, &lock) != 0) {
        return locksUnknown(errno) ? noErr : lastResult();
    }
    return lock.l_type == F_UNLCK ? noErr : opWrErr;
}

} // namespace corvane
