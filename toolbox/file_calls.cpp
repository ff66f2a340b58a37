// The classic file calls over the files and directories of the state in force.
#include "host/files.h"

#include "toolbox/apple_double.h"
#include "toolbox/finder_info.h"
#include "toolbox/pascal.h"
#include "toolbox/result_codes.h"
#include "toolbox/state.h"

#include <climits>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>

namespace corvane {

namespace {

FileTable& files() {
    return toolboxState().files;
}
Directories& directories() {
    return toolboxState().directories;
}

OSErr finish(ParamBlock* block, OSErr result) {
    block->ioResult = result;
    return result;
}

/// Runs `body` with the path that the block's volume, directory and name mean.
template <class Body>
OSErr withPath(ParamBlock* block, std::int32_t directory, Body body) {
    std::string path;
    const OSErr error =
        directories().locate(block->ioVRefNum, directory, fromPascal(block->ioNamePtr), path);
    return finish(block, error != noErr ? error : body(path));
}

bool isFolder(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

constexpr std::string_view volumeName = "Root";

/// Name and parent of the directory `id`.
OSErr describe(std::int32_t id, ParamBlock* block) {
    const std::string path = *directories().pathOf(id);
    if (!isFolder(path)) {
        return dirNFErr;
    }
    const std::size_t slash = path.rfind('/');
    const bool root = id == fsRtDirID;
    if (block->ioNamePtr != nullptr) {
        toPascal(root ? volumeName : std::string_view(path).substr(slash + 1), block->ioNamePtr);
    }
    block->ioDirID = id;
    block->ioDrParID =
        root ? fsRtParID : directories().idOf(path.substr(0, std::max(slash, std::size_t{1})));
    return noErr;
}

/// The directory of a path, absolute and without links; empty, with `errno`, where there is none.
std::string realDirectory(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : std::string();
}

} // namespace

OSErr PBOpenSync(ParamBlock* block) {
    block->ioRefNum = 0;
    return withPath(block, 0, [&](const std::string& path) {
        return files().open(path, block->ioPermssn, block->ioRefNum);
    });
}

OSErr PBCloseSync(ParamBlock* block) {
    return finish(block, files().close(block->ioRefNum));
}

OSErr PBReadSync(ParamBlock* block) {
    block->ioActCount = block->ioReqCount;
    return finish(block, files().read(block->ioRefNum, block->ioPosMode, block->ioPosOffset,
                                      block->ioBuffer, block->ioActCount));
}

OSErr PBWriteSync(ParamBlock* block) {
    block->ioActCount = block->ioReqCount;
    return finish(block, files().write(block->ioRefNum, block->ioPosMode, block->ioPosOffset,
                                       block->ioSource, block->ioActCount));
}

OSErr PBGetFPosSync(ParamBlock* block) {
    return finish(block, files().mark(block->ioRefNum, block->ioPosOffset));
}

OSErr PBSetFPosSync(ParamBlock* block) {
    return finish(block, files().setMark(block->ioRefNum, block->ioPosMode, block->ioPosOffset));
}

OSErr PBGetEOFSync(ParamBlock* block) {
    return finish(block, files().length(block->ioRefNum, block->ioMisc));
}

OSErr PBSetEOFSync(ParamBlock* block) {
    return finish(block, files().setLength(block->ioRefNum, block->ioMisc));
}

OSErr PBFlushFileSync(ParamBlock* block) {
    return finish(block, files().flush(block->ioRefNum));
}

OSErr PBFlushVolSync(ParamBlock* block) {
    std::int32_t directory = 0;
    return finish(block, directories().find(block->ioVRefNum, 0, directory));
}

OSErr PBCreateSync(ParamBlock* block) {
    return withPath(block, 0, FileTable::create);
}

OSErr PBDeleteSync(ParamBlock* block) {
    return withPath(block, 0, [](const std::string& path) {
        const OSErr error = FileTable::remove(path);
        if (error == noErr) {
            ResourceFiles::remove(files(), path);
        }
        return error;
    });
}

OSErr PBGetFInfoSync(ParamBlock* block) {
    return withPath(block, 0, [&](const std::string& path) {
        return readFinderInfo(path, block->ioFlFndrInfo);
    });
}

OSErr PBSetFInfoSync(ParamBlock* block) {
    return withPath(block, 0, [&](const std::string& path) {
        return writeFinderInfo(path, block->ioFlFndrInfo);
    });
}

OSErr PBSetVolSync(ParamBlock* block) {
    return finish(block, directories().setDefault(block->ioVRefNum));
}

OSErr PBDirCreateSync(ParamBlock* block) {
    return withPath(block, block->ioDirID, [&](const std::string& path) {
        if (mkdir(path.c_str(), 0777) != 0) {
            const OSErr error = lastResult();
            return error == fnfErr ? dirNFErr : error;
        }
        block->ioDirID = directories().idOf(path);
        return noErr;
    });
}

OSErr OpenWD(std::int16_t volume, std::int32_t directory, std::int32_t owner,
             std::int16_t* workingDirectory) {
    return directories().openWorking(volume, directory, owner, *workingDirectory);
}

OSErr PBOpenWDSync(ParamBlock* block) {
    return finish(block,
                  OpenWD(block->ioVRefNum, block->ioDirID, block->ioWDProcID, &block->ioVRefNum));
}

OSErr PBGetCatInfo(ParamBlock* block) {
    if (block->ioFDirIndex == 0) {
        return withPath(block, block->ioDirID, [](const std::string& path) {
            struct stat status;
            return lstat(path.c_str(), &status) == 0 ? noErr : lastResult();
        });
    }
    if (block->ioFDirIndex > 0) {
        return finish(block, paramErr);
    }
    std::int32_t id = 0;
    const OSErr error = directories().find(block->ioVRefNum, block->ioDirID, id);
    return finish(block, error != noErr ? error : describe(id, block));
}

OSErr makeFileSpecification(std::string_view posixPath, FileSpecification& file) {
    file = {};
    const std::size_t nameStart = posixPath.rfind('/') + 1;
    const std::string name(posixPath.substr(nameStart));
    if (name.empty() || name == "." || name == ".." || posixPath.size() >= PATH_MAX ||
        posixPath.find('\0') != std::string_view::npos) {
        return bdNamErr;
    }
    const std::string directory =
        realDirectory(nameStart == 0 ? "." : std::string(posixPath.substr(0, nameStart)));
    if (directory.empty()) {
        const OSErr error = lastResult();
        return error == fnfErr ? dirNFErr : error;
    }
    file.volume = wholeMachine;
    file.directory = directories().idOf(directory);
    toPascal(directories().sayable(file.directory, name), file.name, sizeof file.name - 1);
    return noErr;
}

std::string posixPathOf(std::int16_t volume, std::int32_t directory, const std::uint8_t* name) {
    std::int32_t id = 0;
    if (directories().find(volume, directory, id) != noErr) {
        return {};
    }
    const std::string text = fromPascal(name);
    if (text.empty()) {
        return *directories().pathOf(id);
    }
    std::string path;
    return directories().locate(volume, directory, text, path) == noErr ? path : std::string();
}

OSErr lockFile(std::string_view posixPath, std::int32_t& lock) {
    lock = 0;
    return posixPath.find('\0') == std::string_view::npos
               ? files().lock(std::string(posixPath), lock)
               : bdNamErr;
}

void unlockFile(std::int32_t lock) {
    files().unlock(lock);
}

} // namespace corvane
