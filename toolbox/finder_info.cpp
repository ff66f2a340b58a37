#include "toolbox/finder_info.h"

#include "toolbox/big_endian.h"
#include "toolbox/result_codes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace corvane {

namespace {

constexpr const char* attribute = "user.com.apple.FinderInfo";

// The record of `FInfo` and the extended one after it, which is kept as it is.
using Attribute = std::array<std::byte, 32>;

OSErr checkRegular(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) {
        return lastResult();
    }
    return S_ISREG(status.st_mode) ? noErr : fnfErr;
}

/// An attribute of another length counts as none.
Attribute readAttribute(const std::string& path) {
    Attribute bytes{};
    const ssize_t length = getxattr(path.c_str(), attribute, bytes.data(), bytes.size());
    return length == static_cast<ssize_t>(bytes.size()) ? bytes : Attribute{};
}

} // namespace

OSErr readFinderInfo(const std::string& path, FInfo& info) {
    if (const OSErr error = checkRegular(path); error != noErr) {
        return error;
    }
    const Attribute bytes = readAttribute(path);
    info.fdType = readBig<std::uint32_t>(bytes, 0);
    info.fdCreator = readBig<std::uint32_t>(bytes, 4);
    info.fdFlags = readBig<std::uint16_t>(bytes, 8);
    info.fdLocationV = readBig<std::int16_t>(bytes, 10);
    info.fdLocationH = readBig<std::int16_t>(bytes, 12);
    info.fdFldr = readBig<std::int16_t>(bytes, 14);
    return noErr;
}

OSErr writeFinderInfo(const std::string& path, const FInfo& info) {
    if (const OSErr error = checkRegular(path); error != noErr) {
        return error;
    }
    Attribute bytes = readAttribute(path);
    writeBig(bytes, 0, info.fdType);
    writeBig(bytes, 4, info.fdCreator);
    writeBig(bytes, 8, info.fdFlags);
    writeBig(bytes, 10, info.fdLocationV);
    writeBig(bytes, 12, info.fdLocationH);
    writeBig(bytes, 14, info.fdFldr);
    const bool empty = bytes == Attribute{};
    const int result = empty ? removexattr(path.c_str(), attribute)
                             : setxattr(path.c_str(), attribute, bytes.data(), bytes.size(), 0);
    // Only a refusal to touch the file at all is a failure: the rest means that there is no room
    // for attributes here.
    return result != 0 && (errno == EACCES || errno == EROFS || errno == ENOENT) ? lastResult()
                                                                                 : noErr;
}

} // namespace corvane
