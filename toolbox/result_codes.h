// The machine's error numbers as result codes.
#pragma once

#include "host/files.h"

namespace corvane {

/// The code for a value of `errno`; `ioErr` for what has none of its own, `noErr` for 0.
OSErr resultOf(int error);

/// The code for the `errno` that a failed call left.
OSErr lastResult();

} // namespace corvane
