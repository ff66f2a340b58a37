#include "app/cli/files/file_lock.h"

#include "app/cli/fault.h"
#include "host/files.h"

namespace corvane {

FileLock::FileLock(const std::string& path, Need need) {
    const OSErr error = lockFile(path, lock_);
    if (error == opWrErr) {
        throw Failure({code::access, "another program is saving into " + path +
                                         " at this moment; try again when it is done"});
    }
    if (error != noErr && need == Need::always) {
        throw Failure({code::access, path +
                                         " cannot be kept from other programs while it is "
                                         "changed (" +
                                         std::to_string(error) + "); check its permissions"});
    }
}

FileLock::~FileLock() {
    if (lock_ != 0) {
        unlockFile(lock_);
    }
}

} // namespace corvane
