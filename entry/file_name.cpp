#include "entry/file_name.h"

#include "host/files.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstddef>

namespace corvane {

namespace {

/// Whose working directories these are.
constexpr auto directoryOwner = static_cast<std::int32_t>(fourCharacters("HST5"));

} // namespace

std::string specifiedName(const FileSpecification& file) {
    const auto length = std::min<std::size_t>(file.name[0], sizeof file.name - 1);
    return {file.name + 1, file.name + 1 + length};
}

std::int16_t specifiedDirectory(const FileSpecification& file) {
    std::int16_t reference = 0;
    if (OpenWD(file.volume, file.directory, directoryOwner, &reference) != noErr) {
        failException(Exception::access);
    }
    return reference;
}

} // namespace corvane
