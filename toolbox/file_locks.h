// Which files this process keeps for itself: locks by open file description, one for each file
// however often it is opened here.
#pragma once

#include "host/files.h"
#include "toolbox/descriptor.h"

#include <map>
#include <sys/stat.h>
#include <utility>

namespace corvane {

/// A file itself, whatever it is called: device and inode.
using FileIdentity = std::pair<dev_t, ino_t>;

class FileLocks {
public:
    /// Keeps other processes from writing the file, until `release` was called as often as this.
    /// `descriptor` is open for writing. `opWrErr` where another process keeps it.
    OSErr claim(int descriptor, FileIdentity file);
    void release(FileIdentity file);

    /// `opWrErr` where another process keeps the file.
    OSErr test(int descriptor, FileIdentity file) const;

private:
    struct Claim {
        Descriptor descriptor;
        int owners = 0;
    };
    std::map<FileIdentity, Claim> claims_;
};

} // namespace corvane
