// The person's fontconfig configuration.
#pragma once

#include <fontconfig/fontconfig.h>

namespace corvane {

/// As far as a list of fonts needs it: folders, caches and choices. Rules for matching names, most
/// of what there is to read, are left out, and so are the descriptions of all that could be
/// configured. Null where it cannot be read: fontconfig then knows what else to do.
FcConfig* readFontConfiguration();

} // namespace corvane
