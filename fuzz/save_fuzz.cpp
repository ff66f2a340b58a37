// Any bytes as a file to save into.
#include "fuzz/sound_save.h"

namespace corvane::fuzz {

void fuzzSave(Bytes input) {
    Choices choices(input);
    requireSoundSave(input, choices.below(4) != 0 ? Profile::extended : Profile::original);
}

} // namespace corvane::fuzz
