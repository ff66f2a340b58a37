// Names in file specifications.
#pragma once

#include "host/parameters.h"

#include <cstdint>
#include <string>

namespace corvane {

/// The name without its length byte; a length beyond the field is cut to it.
std::string specifiedName(const FileSpecification& file);

/// A working directory for the folder of the file. Raises `access` where it cannot be opened.
std::int16_t specifiedDirectory(const FileSpecification& file);

} // namespace corvane
