// Any bytes as a file to save into.
#include "fuzz/support/sound_save.h"

namespace corvane::fuzz {

void fuzzSave(Bytes input) {
    Choices choices(input);
    const Profile profile = choices.below(4) != 0 ? Profile::extended : Profile::original;
    requireSoundSave(input, profile, [&](std::uint32_t limit) { return choices.below(limit); });
}

} // namespace corvane::fuzz
