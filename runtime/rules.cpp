#include "runtime/rules.h"

namespace corvane {

namespace {

const Rules* selectedRules = &originalRules;

} // namespace

const Rules& rules() {
    return *selectedRules;
}

void selectRules(Profile profile) {
    selectedRules = profile == Profile::extended ? &extendedRules : &originalRules;
}

} // namespace corvane
