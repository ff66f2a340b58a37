#include "filters/file.h"

#include "host/parameters.h"
#include "host/resources.h"
#include "host/utilities.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::int16_t modeRead = 0;
constexpr std::int16_t modeWrite = 1;
constexpr std::int16_t modeAppend = 2;

constexpr std::string_view counterMark = "^0";

// Result of `newDirFile` where the volume refuses a folder: the exception's number, as a value.
constexpr OSErr folderRefused = 18;

/// A name as the toolbox takes it. One that is too long becomes empty, which no file's name is.
class PrefixedName {
public:
    explicit PrefixedName(std::string_view name) {
        if (name.size() < bytes_.size()) {
            bytes_[0] = static_cast<std::uint8_t>(name.size());
            std::copy(name.begin(), name.end(), bytes_.begin() + 1);
        }
    }
    std::uint8_t* data() { return bytes_.data(); }

private:
    std::array<std::uint8_t, 256> bytes_{};
};

void check(OSErr result) {
    if (result != noErr) {
        failException(Exception::io);
    }
}

void checkWritten(OSErr result) {
    if (result == dskFulErr) {
        failException(Exception::diskFull);
    }
    check(result);
}

Exception openFailure(OSErr result) {
    switch (result) {
    case permErr:
    case wrPermErr:
    case fLckdErr:
    case vLckdErr:
    case opWrErr:
    case afpAccessDenied:
    case afpVolLocked:
        return Exception::access;
    default:
        return Exception::io;
    }
}

std::int16_t modeOf(std::string_view mode) {
    constexpr std::array<std::string_view, 3> modes{"read", "write", "append"};
    const auto* found = std::find(modes.begin(), modes.end(), mode);
    if (found == modes.end()) {
        failException(Exception::type);
    }
    return static_cast<std::int16_t>(found - modes.begin());
}

/// The block of a call on an open file.
ParamBlock blockOf(const FileRecord& file) {
    ParamBlock block;
    block.ioRefNum = file.dataRef;
    return block;
}

/// Closes the data fork, if it is open, and clears the record.
OSErr closeFork(FileRecord& file) noexcept {
    if (file.dataRef == 0) {
        return noErr;
    }
    ParamBlock block = blockOf(file);
    file = {};
    return PBCloseSync(&block);
}

/// Makes the file that mode "write" goes on to open. What exists is never replaced: it may be the
/// only copy of somebody's work.
void createFile(ParamBlock block) {
    PBSetVolSync(&block);
    check(PBCreateSync(&block));
    check(PBSetFInfoSync(&block));
    if (rules().resourceForks) {
        CreateResFile(block.ioNamePtr);
    }
}

} // namespace

void openFile(FileRecord& file, std::int16_t volume, std::string_view name, std::string_view mode) {
    file = {};
    if (name.size() > longestFileName) {
        failException(Exception::type);
    }
    file.mode = modeOf(mode);
    PrefixedName prefixed(name);
    ParamBlock block;
    block.ioNamePtr = prefixed.data();
    block.ioVRefNum = volume;
    block.ioPermssn = fsRdWrShPerm;
    if (file.mode == modeWrite) {
        createFile(block);
    }
    OSErr result = PBOpenSync(&block);
    if (result != noErr && file.mode == modeRead) {
        block.ioPermssn = fsRdPerm;
        result = PBOpenSync(&block);
    }
    if (result != noErr) {
        failException(openFailure(result));
    }
    file.volume = volume;
    file.dataRef = block.ioRefNum;
    if (file.mode == modeWrite) {
        finishFile(volume, name, fourCharacters("PDF "), fourCharacters("CVRN"), false);
    }
    if (file.mode == modeAppend) {
        block.ioPosMode = fsFromLEOF;
        if (const OSErr atEnd = PBSetFPosSync(&block); atEnd != noErr) {
            closeFile(file);
            check(atEnd);
        }
    }
}

void closeFile(FileRecord& file) {
    if (file.dataRef == 0) {
        return;
    }
    ParamBlock block;
    block.ioVRefNum = file.volume;
    check(closeFork(file));
    PBFlushVolSync(&block);
}

void dropFile(FileRecord& file) noexcept {
    closeFork(file);
}

std::int32_t readFile(FileRecord& file, std::span<std::byte> buffer) {
    if (file.mode != modeRead) {
        failException(Exception::access);
    }
    ParamBlock block = blockOf(file);
    block.ioBuffer = buffer.data();
    block.ioReqCount = static_cast<std::int32_t>(std::min<std::size_t>(buffer.size(), INT32_MAX));
    block.ioPosMode = fsFromMark;
    if (const OSErr result = PBReadSync(&block); result != eofErr) {
        check(result);
    }
    return block.ioActCount;
}

std::int32_t writeFile(FileRecord& file, std::span<const std::byte> buffer) {
    if (file.mode == modeRead) {
        failException(Exception::access);
    }
    if (buffer.size() > INT32_MAX) {
        failException(Exception::io);
    }
    ParamBlock block = blockOf(file);
    block.ioSource = buffer.data();
    block.ioReqCount = static_cast<std::int32_t>(buffer.size());
    block.ioPosMode = fsFromMark | noCacheMask;
    checkWritten(PBWriteSync(&block));
    return block.ioActCount;
}

std::int32_t markFile(const FileRecord& file) {
    ParamBlock block = blockOf(file);
    check(PBGetFPosSync(&block));
    return block.ioPosOffset;
}

std::int32_t seekFile(FileRecord& file, std::int32_t position) {
    ParamBlock block = blockOf(file);
    block.ioPosMode = position < 0 ? fsFromLEOF : fsFromStart;
    block.ioPosOffset = position;
    check(PBSetFPosSync(&block));
    return block.ioPosOffset;
}

std::int32_t lengthFile(const FileRecord& file) {
    ParamBlock block = blockOf(file);
    check(PBGetEOFSync(&block));
    return block.ioMisc;
}

void backupFile(FileRecord& file, std::int32_t length) {
    ParamBlock block = blockOf(file);
    block.ioMisc = length;
    check(PBSetEOFSync(&block));
}

void flushFile(FileRecord& file) {
    ParamBlock block = blockOf(file);
    checkWritten(PBFlushFileSync(&block));
}

void pushFile(FileRecord& file, std::string_view name) {
    PrefixedName prefixed(name);
    if (!rules().resourceForks) {
        ParamBlock block;
        block.ioVRefNum = file.volume;
        PBSetVolSync(&block);
        CreateResFile(prefixed.data()); // where there is one it stays as it is
    }
    file.resourceRef = OpenRFPerm(prefixed.data(), file.volume, fsRdWrPerm);
    if (file.resourceRef == -1) {
        failException(Exception::io);
    }
}

void tossFile(FileRecord& file) {
    if (file.resourceRef == -1) {
        return;
    }
    CloseResFile(file.resourceRef);
    file.resourceRef = -1;
    check(ResError());
}

Handle loadFile(std::uint32_t type, std::int16_t id, std::string_view name) {
    return name.empty() ? Get1Resource(type, id)
                        : Get1NamedResource(type, PrefixedName(name).data());
}

void saveFile(Handle data, std::uint32_t type, std::int16_t id, std::string_view name) {
    AddResource(data, type, id, PrefixedName(name).data());
    if (ResError() != noErr) {
        DisposeHandle(data);
        failException(Exception::io);
    }
    WriteResource(data);
    const OSErr written = ResError();
    ReleaseResource(data);
    check(written);
}

std::string uniqueFile(std::int16_t volume, std::string_view pattern) {
    const std::size_t mark = pattern.find(counterMark);
    for (std::int32_t counter = 0; counter < INT32_MAX; ++counter) {
        std::string candidate(pattern);
        if (mark != std::string_view::npos) {
            candidate.replace(mark, counterMark.size(), std::to_string(counter));
        }
        PrefixedName prefixed(candidate);
        ParamBlock block;
        block.ioNamePtr = prefixed.data();
        block.ioVRefNum = volume;
        if (PBGetCatInfo(&block) != noErr) {
            return candidate;
        }
        if (mark == std::string_view::npos) {
            break;
        }
    }
    failException(Exception::type);
}

OSErr finishFile(std::int16_t volume, std::string_view name, std::uint32_t type,
                 std::uint32_t creator, bool customIcon) {
    PrefixedName prefixed(name);
    ParamBlock block;
    block.ioNamePtr = prefixed.data();
    block.ioVRefNum = volume;
    if (const OSErr result = PBGetFInfoSync(&block); result != noErr) {
        return result;
    }
    FInfo& info = block.ioFlFndrInfo;
    info.fdType = type;
    info.fdCreator = creator;
    if (customIcon) {
        info.fdFlags |= hasCustomIcon;
    }
    return PBSetFInfoSync(&block);
}

OSErr deleteFile(std::int16_t volume, std::string_view name) {
    PrefixedName prefixed(name);
    ParamBlock block;
    block.ioNamePtr = prefixed.data();
    block.ioVRefNum = volume;
    return PBDeleteSync(&block);
}

OSErr newDirFile(std::int16_t& volume, std::int32_t& directory, std::string_view name) {
    constexpr std::int16_t beepDuration = 3;
    PrefixedName prefixed(name);
    ParamBlock block;
    block.ioNamePtr = prefixed.data();
    block.ioVRefNum = volume;
    block.ioDirID = directory;
    const OSErr result = PBDirCreateSync(&block);
    if (result == dupFNErr || result == bdNamErr) {
        SysBeep(beepDuration);
        return result;
    }
    volume = block.ioVRefNum;
    directory = block.ioDirID;
    switch (result) {
    case dirNFErr:
    case extFSErr:
    case vLckdErr:
    case wPrErr:
    case ioErr:
    case nsvErr:
    case dirFulErr:
        return folderRefused;
    default:
        return result;
    }
}

std::int16_t workingDirRef(std::int16_t volume, std::int32_t directory) {
    PrefixedName none({});
    ParamBlock block;
    block.ioNamePtr = none.data();
    block.ioVRefNum = volume;
    block.ioDirID = directory;
    PBOpenWDSync(&block);
    return block.ioVRefNum;
}

std::int16_t PathNameFromDirID(std::int32_t directory, std::int16_t volume, std::string& path) {
    std::array<std::uint8_t, 256> name{};
    ParamBlock block;
    block.ioNamePtr = name.data();
    block.ioVRefNum = volume;
    block.ioDrParID = directory;
    do {
        block.ioFDirIndex = -1;
        block.ioDirID = block.ioDrParID;
        if (const OSErr result = PBGetCatInfo(&block); result != noErr) {
            return result;
        }
        path.insert(0, ":");
        path.insert(path.begin(), name.begin() + 1, name.begin() + 1 + name[0]);
    } while (block.ioDirID != fsRtDirID);
    return fsRtDirID;
}

} // namespace corvane
