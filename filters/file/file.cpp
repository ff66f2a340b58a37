#include "filters/file/file.h"

#include "filters/file/file_calls.h"
#include "filters/file/file_names.h"
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

void checkWritten(OSErr result) {
    if (result == dskFulErr) {
        failException(Exception::diskFull);
    }
    checkFile(result);
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
    checkFile(PBCreateSync(&block));
    checkFile(PBSetFInfoSync(&block));
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
            checkFile(atEnd);
        }
    }
}

void closeFile(FileRecord& file) {
    if (file.dataRef == 0) {
        return;
    }
    ParamBlock block;
    block.ioVRefNum = file.volume;
    checkFile(closeFork(file));
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
        checkFile(result);
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
    checkFile(PBGetFPosSync(&block));
    return block.ioPosOffset;
}

std::int32_t seekFile(FileRecord& file, std::int32_t position) {
    ParamBlock block = blockOf(file);
    block.ioPosMode = position < 0 ? fsFromLEOF : fsFromStart;
    block.ioPosOffset = position;
    checkFile(PBSetFPosSync(&block));
    return block.ioPosOffset;
}

std::int32_t lengthFile(const FileRecord& file) {
    ParamBlock block = blockOf(file);
    checkFile(PBGetEOFSync(&block));
    return block.ioMisc;
}

void backupFile(FileRecord& file, std::int32_t length) {
    ParamBlock block = blockOf(file);
    block.ioMisc = length;
    checkFile(PBSetEOFSync(&block));
}

void flushFile(FileRecord& file) {
    ParamBlock block = blockOf(file);
    checkWritten(PBFlushFileSync(&block));
}

} // namespace corvane
