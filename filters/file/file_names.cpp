#include "filters/file/file_names.h"

#include "filters/file/file_calls.h"
#include "host/parameters.h"
#include "host/utilities.h"

#include <array>

namespace corvane {

namespace {

constexpr std::string_view counterMark = "^0";

// Result of `newDirFile` where the volume refuses a folder: the exception's number, as a value.
constexpr OSErr folderRefused = 18;

} // namespace

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
