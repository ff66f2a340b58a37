// The host's extension as this plug-in sees it.
#pragma once

#include "host/extension.h"

#include <optional>

namespace corvane {

/// A copy of the record that the host registered; nothing where there is none. Of an older host's,
/// which is shorter, the fields that it lacks are as in a record that nobody filled; of a newer
/// host's, the fields that we know are taken.
std::optional<HostExtension> knownExtension();

} // namespace corvane
