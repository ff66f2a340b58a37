// The resource fork of a file. Failures raise.
#pragma once

#include "filters/file/file.h"
#include "host/resources.h"

#include <cstdint>
#include <string_view>

namespace corvane {

/// Open and close the resource fork of a file in the record's volume. Raise `io`. `pushFile` makes
/// the fork where a file is written without one.
void pushFile(FileRecord& file, std::string_view name);
void tossFile(FileRecord& file);

/// The resource of that type and name, or and id where the name is empty, in the resource fork
/// opened last; null where there is none.
Handle loadFile(std::uint32_t type, std::int16_t id, std::string_view name = {});

/// Adds a resource to the resource fork opened last, which takes the handle over. Raises `io`.
void saveFile(Handle data, std::uint32_t type, std::int16_t id, std::string_view name = {});

} // namespace corvane
