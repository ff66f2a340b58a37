// Kinds of damage, as a report names them.
#pragma once

#include "host/mend.h"

#include <string>
#include <string_view>

namespace corvane {

std::string_view mendName(Mend kind);

/// "a damaged cross-reference, 2 streams of wrong length"; empty where nothing was found.
std::string damageText(const MendCounts& counts);

} // namespace corvane
