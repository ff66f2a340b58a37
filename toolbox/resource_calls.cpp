// The classic resource calls over the resources of the state in force.
#include "host/resources.h"

#include "toolbox/big_endian.h"
#include "toolbox/pascal.h"
#include "toolbox/state.h"

namespace corvane {

namespace {

ResourceFiles& resources() {
    return toolboxState().resources;
}

Handle getResource(const ResourceKey& key, bool newestOnly) {
    Handle handle;
    resources().lastError = resources().get(key, newestOnly, handle);
    return handle;
}

OSErr locate(const std::uint8_t* name, std::int16_t volume, std::string& path) {
    return toolboxState().directories.locate(volume, 0, fromPascal(name), path);
}

} // namespace

void addResourceSource(std::span<const StaticResource> table) {
    resources().addSource(table);
}
void removeResourceSource(std::span<const StaticResource> table) {
    resources().removeSource(table);
}

OSErr ResError() {
    return resources().lastError;
}

Handle GetResource(std::uint32_t type, std::int16_t id) {
    return getResource({type, id, {}}, false);
}
Handle Get1Resource(std::uint32_t type, std::int16_t id) {
    return getResource({type, id, {}}, true);
}
Handle Get1NamedResource(std::uint32_t type, const std::uint8_t* name) {
    const std::string text = fromPascal(name);
    if (text.empty()) {
        resources().lastError = resNotFound;
        return {};
    }
    return getResource({type, 0, text}, true);
}

void AddResource(Handle data, std::uint32_t type, std::int16_t id, const std::uint8_t* name) {
    resources().lastError = resources().add(data, {type, id, fromPascal(name)});
}

void WriteResource(Handle resource) {
    resources().lastError = resources().write(toolboxState().files, resource);
}

void ReleaseResource(Handle resource) {
    resources().lastError = resources().release(resource);
}

void CreateResFile(const std::uint8_t* name) {
    std::string path;
    const OSErr error = locate(name, 0, path);
    resources().lastError = error != noErr ? error : resources().create(toolboxState().files, path);
}

std::int16_t OpenRFPerm(const std::uint8_t* name, std::int16_t volume, std::int8_t permission) {
    std::string path;
    std::int16_t reference = 0;
    OSErr error = locate(name, volume, path);
    if (error == noErr) {
        error = resources().open(toolboxState().files, path, permission, reference);
    }
    resources().lastError = error;
    return error == noErr ? reference : std::int16_t{-1};
}

void CloseResFile(std::int16_t reference) {
    resources().lastError = resources().close(toolboxState().files, reference);
}

void GetIndString(std::uint8_t* text, std::int16_t list, std::int16_t index) {
    text[0] = 0;
    const std::span<const std::byte> bytes = resources().find(fourCharacters("STR#"), list);
    resources().lastError = bytes.empty() ? resNotFound : noErr;
    if (bytes.size() < 2 || index < 1 || index > readBig<std::uint16_t>(bytes, 0)) {
        return;
    }
    std::size_t offset = 2;
    for (int i = 1; has(bytes, offset, 1); ++i) {
        const std::size_t length = std::to_integer<std::size_t>(bytes[offset]);
        if (!has(bytes, offset + 1, length)) {
            return;
        }
        if (i == index) {
            std::memcpy(text, &bytes[offset], length + 1);
            return;
        }
        offset += length + 1;
    }
}

} // namespace corvane
