// Styles of text as the host has them, from the state of text.
#pragma once

#include "reader/classic/text_state.h"

namespace corvane {
struct GraphicsState;
struct Interpreter;
} // namespace corvane

namespace corvane::classic {

/// The paint of the state, as the render mode has it.
PathStyle stateTextStyle(const GraphicsState& state);

/// Size, rise, leading, tracking and scales. Tracking out of the usual range is warned of, and set
/// all the same.
void setCharacters(CharStyle& style, const TextState& text);

/// `wordSpacing` is what is added to the width of a blank, in percent of it.
void setParagraph(ParaStyle& style, Fixed wordSpacing);

/// A length of text space in percent of the width of a blank in the font and size in use.
Fixed scalarTextLine(Interpreter& interpreter, Fixed length);

} // namespace corvane::classic
