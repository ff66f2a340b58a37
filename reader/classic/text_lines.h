// Lines of text: each is one text object of the host with one run, from the first string that is
// shown to the next `Td`, `TD`, `Tm` or `ET`. `T*` and its like stay within it.
#pragma once

#include <string_view>

namespace corvane {
struct Interpreter;
}

namespace corvane::classic {

/// Opens a line at the text matrix where none is open. Nothing in a Type 3 font.
void startsTextLine(Interpreter& interpreter);
/// Puts a string, in the state of text, behind what the line has. Nothing in a Type 3 font; without
/// a line `context`.
void appendTextLine(Interpreter& interpreter, std::string_view string);
/// The line goes on below itself.
void returnTextLine(Interpreter& interpreter);
/// Ends the line, if there is one. Where the text clips, it becomes the clip of a new group.
void finishTextLine(Interpreter& interpreter);

} // namespace corvane::classic
