// The file calls of the toolbox: parameter-block calls on data forks, directories and Finder
// information, and how a host names files of the machine it runs on.
//
// A file is named by a volume reference, a directory id and a length-prefixed name. The machine is
// one volume; directory id 2 is its root. A working directory is a volume reference that stands for
// a directory, so that calls without a directory id reach it. Names with "/", ":" or a zero byte,
// "." and ".." are `bdNamErr`: a name never leaves its directory.
#pragma once

#include "host/parameters.h"
#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// 0 or a negative result code.
using OSErr = std::int16_t;

inline constexpr OSErr noErr = 0;
inline constexpr OSErr dirFulErr = -33;       ///< directory full
inline constexpr OSErr dskFulErr = -34;       ///< disk full, or past the process's file size limit
inline constexpr OSErr nsvErr = -35;          ///< no such volume or working directory
inline constexpr OSErr ioErr = -36;           ///< input or output failed
inline constexpr OSErr bdNamErr = -37;        ///< a name that no file can have here
inline constexpr OSErr fnOpnErr = -38;        ///< file not open
inline constexpr OSErr eofErr = -39;          ///< logical end of file reached
inline constexpr OSErr posErr = -40;          ///< a position before the start of the file
inline constexpr OSErr tmfoErr = -42;         ///< too many files open
inline constexpr OSErr fnfErr = -43;          ///< file not found
inline constexpr OSErr wPrErr = -44;          ///< volume write-protected by hardware
inline constexpr OSErr fLckdErr = -45;        ///< file locked
inline constexpr OSErr vLckdErr = -46;        ///< volume mounted read-only
inline constexpr OSErr fBsyErr = -47;         ///< file busy
inline constexpr OSErr dupFNErr = -48;        ///< a file of that name exists
inline constexpr OSErr opWrErr = -49;         ///< file already open for writing
inline constexpr OSErr paramErr = -50;        ///< bad parameter
inline constexpr OSErr rfNumErr = -51;        ///< reference number not in use
inline constexpr OSErr permErr = -54;         ///< permission refused
inline constexpr OSErr extFSErr = -58;        ///< volume of a foreign file system
inline constexpr OSErr wrPermErr = -61;       ///< file opened for reading only
inline constexpr OSErr memFullErr = -108;     ///< zone full
inline constexpr OSErr dirNFErr = -120;       ///< directory not found
inline constexpr OSErr tmwdoErr = -121;       ///< too many working directories
inline constexpr OSErr notAFileErr = -1302;   ///< a folder, FIFO, socket or device
inline constexpr OSErr fileBoundsErr = -1309; ///< longer than 2^31 - 1 bytes, or would become so
inline constexpr OSErr afpAccessDenied = -5000; ///< a file server refuses access
inline constexpr OSErr afpVolLocked = -5031;    ///< a file server's volume is read-only

/// Values of `ioPermssn`. 1 locks nothing. 2 and 3 keep every other writer out while the file is
/// open. 4 keeps them out from its first change of the file on. A file that another process keeps
/// for itself gives `opWrErr` to 2, 3 and 4.
inline constexpr std::int8_t fsRdPerm = 1;
inline constexpr std::int8_t fsWrPerm = 2;
inline constexpr std::int8_t fsRdWrPerm = 3;
inline constexpr std::int8_t fsRdWrShPerm = 4;

/// Values of `ioPosMode`: what `ioPosOffset` counts from. The bits above the lowest two are
/// requests about caching, which this file system has no use for.
inline constexpr std::int16_t fsAtMark = 0; ///< the offset is ignored
inline constexpr std::int16_t fsFromStart = 1;
inline constexpr std::int16_t fsFromLEOF = 2;
inline constexpr std::int16_t fsFromMark = 3;
inline constexpr std::int16_t noCacheMask = 0x20;

inline constexpr std::int16_t wholeMachine = -1; ///< the volume reference of the one volume
inline constexpr std::int32_t fsRtDirID = 2;     ///< the root of the volume
inline constexpr std::int32_t fsRtParID = 1;     ///< what the root calls its parent

/// Finder information of a file. Kept in the extended attribute `user.com.apple.FinderInfo` (32
/// bytes, big-endian); where the file system has none, nothing is kept and everything reads as 0.
struct FInfo {
    std::uint32_t fdType = 0;
    std::uint32_t fdCreator = 0;
    std::uint16_t fdFlags = 0;
    std::int16_t fdLocationV = 0;
    std::int16_t fdLocationH = 0;
    std::int16_t fdFldr = 0;
    friend constexpr bool operator==(const FInfo&, const FInfo&) = default;
};
inline constexpr std::uint16_t hasCustomIcon = 0x0400; ///< of `fdFlags`

/// The parameter block of all file calls. Each call names the fields that it reads and fills; every
/// call puts its result into `ioResult` as well.
struct ParamBlock {
    OSErr ioResult = noErr;
    std::uint8_t* ioNamePtr = nullptr; ///< length-prefixed
    std::int16_t ioVRefNum = 0;        ///< volume or working directory; 0: the default one
    std::int32_t ioDirID = 0;          ///< directory id; 0: that of `ioVRefNum`
    std::int16_t ioRefNum = 0;         ///< an open file
    std::int8_t ioPermssn = 0;         ///< 0: as `fsRdWrPerm`, else as `fsRdPerm`
    std::int16_t ioPosMode = fsAtMark;
    std::int32_t ioPosOffset = 0;        ///< in: counted as `ioPosMode` says; out: the new mark
    std::byte* ioBuffer = nullptr;       ///< of a read
    const std::byte* ioSource = nullptr; ///< of a write
    std::int32_t ioReqCount = 0;
    std::int32_t ioActCount = 0;
    std::int32_t ioMisc = 0;      ///< length of the file
    std::int16_t ioFDirIndex = 0; ///< of `PBGetCatInfo`
    std::int32_t ioWDProcID = 0;  ///< owner of a working directory
    std::int32_t ioDrParID = 0;   ///< parent's directory id
    FInfo ioFlFndrInfo;
};

/// Opens a data fork (name, volume, permission); fills `ioRefNum`. Only regular files are opened;
/// permission 2 also takes a device. Never waits.
TOOLBOX_CALL OSErr PBOpenSync(ParamBlock* block);
TOOLBOX_CALL OSErr PBCloseSync(ParamBlock* block);

/// Read and write `ioReqCount` bytes at the position asked for; fill `ioActCount` and
/// `ioPosOffset`. A read that meets the end of the file gives `eofErr` and the bytes before it.
TOOLBOX_CALL OSErr PBReadSync(ParamBlock* block);
TOOLBOX_CALL OSErr PBWriteSync(ParamBlock* block);

/// The mark, in `ioPosOffset`. Set past the end it goes to the end and gives `eofErr`.
TOOLBOX_CALL OSErr PBGetFPosSync(ParamBlock* block);
TOOLBOX_CALL OSErr PBSetFPosSync(ParamBlock* block);

/// The length of the file, in `ioMisc`. A mark past a new end goes to it.
TOOLBOX_CALL OSErr PBGetEOFSync(ParamBlock* block);
TOOLBOX_CALL OSErr PBSetEOFSync(ParamBlock* block);

/// Asks the machine to put the file's bytes on the disk; what fails there fails here.
TOOLBOX_CALL OSErr PBFlushFileSync(ParamBlock* block);
TOOLBOX_CALL OSErr PBFlushVolSync(ParamBlock* block);

/// Makes an empty file, only where none of that name exists (`dupFNErr`).
TOOLBOX_CALL OSErr PBCreateSync(ParamBlock* block);

/// Removes a file and its resource fork.
TOOLBOX_CALL OSErr PBDeleteSync(ParamBlock* block);

TOOLBOX_CALL OSErr PBGetFInfoSync(ParamBlock* block);
TOOLBOX_CALL OSErr PBSetFInfoSync(ParamBlock* block);

/// Makes `ioVRefNum` the default volume.
TOOLBOX_CALL OSErr PBSetVolSync(ParamBlock* block);

/// Makes a folder named `ioNamePtr` in `ioDirID`; fills `ioDirID` with the new one's.
TOOLBOX_CALL OSErr PBDirCreateSync(ParamBlock* block);

/// Fills `ioVRefNum` with the working directory of `ioDirID` for the owner `ioWDProcID`; asking
/// again gives the same one.
TOOLBOX_CALL OSErr PBOpenWDSync(ParamBlock* block);

/// With index -1: fills `ioNamePtr` (if given; room for 256 bytes) and `ioDrParID` for the
/// directory `ioDirID`. With 0: is there anything named `ioNamePtr`, a folder or a broken link
/// included
/// (`fnfErr`)? Other indexes are `paramErr`.
TOOLBOX_CALL OSErr PBGetCatInfo(ParamBlock* block);

TOOLBOX_CALL OSErr OpenWD(std::int16_t volume, std::int32_t directory, std::int32_t owner,
                          std::int16_t* workingDirectory);

/// Names a file of the machine for the calls above. The file need not exist, its directory must
/// (`dirNFErr`). A name of more than 63 bytes or with a ":" gets an alias that names the same file
/// from then on.
TOOLBOX_CALL OSErr makeFileSpecification(std::string_view posixPath, FileSpecification& file);

/// The path a person knows the file by, aliases mapped back; empty where there is no such directory
/// or name. `name` is length-prefixed; null or empty gives the directory's path.
TOOLBOX_CALL std::string posixPathOf(std::int16_t volume, std::int32_t directory,
                                     const std::uint8_t* name);

/// Keeps other processes from writing a file until `unlockFile`; opens of this process go on as
/// usual. Links are resolved: the file itself is locked, whatever it is called. `opWrErr` where
/// another process has it. `lock` is 0 where the result is not 0.
TOOLBOX_CALL OSErr lockFile(std::string_view posixPath, std::int32_t& lock);
TOOLBOX_CALL void unlockFile(std::int32_t lock);

} // namespace corvane
