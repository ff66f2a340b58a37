// The text state's life: opened with the document, closed with it.
#pragma once

namespace corvane {

/// Gives the state its initial text parameters: Helvetica, an identical encoding, scales of 100 %.
void openText();
void closeText();

} // namespace corvane
