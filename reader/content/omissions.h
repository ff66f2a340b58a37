// What a page has and the artwork does not hold: counted by kind, told to the host at the end.
#pragma once

#include "host/extension.h"

namespace corvane {

void openOmissions();
/// Counts one thing that was left out; the first of its kind raises its warning, if it has one.
void noteOmission(Omission kind);
/// Tells the host extension, if there is one.
void reportOmissions();

} // namespace corvane
