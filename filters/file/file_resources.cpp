#include "filters/file/file_resources.h"

#include "filters/file/file_calls.h"
#include "host/parameters.h"
#include "host/utilities.h"
#include "runtime/rules.h"

namespace corvane {

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
    checkFile(ResError());
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
    checkFile(written);
}

} // namespace corvane
