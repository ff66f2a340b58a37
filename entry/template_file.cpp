// A file to save into, where there is none yet.
#include "entry/file_name.h"
#include "entry/selectors.h"
#include "filters/file/file.h"
#include "filters/file/file_names.h"
#include "host/resources.h"
#include "resources/resources.h"
#include "runtime/exception.h"

#include <algorithm>
#include <vector>

namespace corvane {

namespace {

/// The template, its carriage returns turned into line feeds.
std::vector<std::byte> templateBytes() {
    const Handle resource = GetResource(fourCharacters("TEXT"), templateText);
    if (!resource) {
        failException(Exception::io);
    }
    const auto size = static_cast<std::size_t>(GetHandleSize(resource));
    std::vector<std::byte> bytes(size);
    BlockMove(resource->get(), bytes.data(), static_cast<std::int32_t>(size));
    ReleaseResource(resource);
    std::ranges::replace(bytes, std::byte{'\r'}, std::byte{'\n'});
    return bytes;
}

} // namespace

void createFromTemplate(const ParameterBlock& block) {
    const std::int16_t volume = specifiedDirectory(*block.file);
    const std::string name = specifiedName(*block.file);
    FileRecord file;
    openFile(file, volume, name, "write");
    guarded([&] {
        const std::vector<std::byte> bytes = templateBytes();
        if (writeFile(file, bytes) != static_cast<std::int32_t>(bytes.size())) {
            failException(Exception::io);
        }
    });
    const Exception written = valueException();
    guarded([&] { closeFile(file); });
    if (valueException() != Exception::none) {
        deleteFile(volume, name);
        raiseException(written != Exception::none ? written : valueException());
    }
    finishFile(volume, name, fourCharacters("PDF "), fourCharacters("CVRN"), false);
}

} // namespace corvane
