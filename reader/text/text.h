// The text state.
#pragma once

namespace corvane {

struct TextState;

/// Gives the state its initial text parameters: Helvetica, an identical encoding, scales of 100 %.
void openText(TextState& text);

} // namespace corvane
