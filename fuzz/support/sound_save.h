// What a save must do, whatever the file.
#pragma once

#include "fuzz/support/artwork_edit.h"
#include "fuzz/targets.h"
#include "host/extension.h"

namespace corvane::fuzz {

/// Opens the first page, edits it as `choose` says, saves it twice and takes both updates off
/// again. Requires that the file either is as before, or that the old bytes are still in it, the
/// page opens as it was saved, and its content lost nothing but what was edited. Then mends the
/// file alone.
void requireSoundSave(Bytes file, Profile profile, const Choose& choose);

} // namespace corvane::fuzz
