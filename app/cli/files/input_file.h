// Whether a file that the person named can be read or changed, and why not.
#pragma once

#include "app/cli/options/arguments.h"

#include <string>

namespace corvane {

/// Raises `Failure`: the file cannot be opened for `reason`.
[[noreturn]] void refuseFile(const std::string& reason);

/// Whether there is anything of that name; true where that cannot be found out.
bool isThere(const std::string& path);

/// The path again. Raises `Failure` where it is no regular file that can be read, or one of more
/// than 2^31 - 1 bytes. The plug-in has one code for all of this; here the reason is known.
const std::string& requireReadable(const std::string& path);

/// The same for a file that is to change.
const std::string& requireWritable(const std::string& path);

/// Raises `Failure` where the person expects a file of another length (`--expect-size`), or any and
/// there is none.
void requireExpected(const Arguments& arguments);

} // namespace corvane
