// Names in file specifications.
#pragma once

#include "host/parameters.h"

#include <cstdint>
#include <string>

namespace corvane {

/// The name without its length byte, which is not believed beyond the field.
std::string specifiedName(const FileSpecification& file);

/// A working directory for the folder of the file. Raises `access` where it cannot be opened.
std::int16_t specifiedDirectory(const FileSpecification& file);

} // namespace corvane
