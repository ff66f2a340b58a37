// What a save must do, whatever the file.
#pragma once

#include "fuzz/targets.h"
#include "host/extension.h"

namespace corvane::fuzz {

/// Opens the first page and saves it again. Requires that the file either is as before, or that the
/// page opens as it was saved and taking the update off gives the file back.
void requireSoundSave(Bytes file, Profile profile);

} // namespace corvane::fuzz
