// The host's extension as this plug-in sees it.
#pragma once

#include "host/extension.h"

#include <optional>

namespace corvane {

/// A copy of the record that the host registered; nothing where there is none. The record of an
/// older host is shorter: the fields that it lacks have their defaults. Of a newer host's record,
/// the fields that we know are taken.
std::optional<HostExtension> knownExtension();

} // namespace corvane
