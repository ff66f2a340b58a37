// Finder information in the extended attribute where other programs look for it.
#pragma once

#include "host/files.h"

#include <string>

namespace corvane {

/// Both want a regular file (`fnfErr`). Where the file system keeps no attributes, reading gives
/// zeros and writing keeps nothing.
OSErr readFinderInfo(const std::string& path, FInfo& info);
OSErr writeFinderInfo(const std::string& path, const FInfo& info);

} // namespace corvane
