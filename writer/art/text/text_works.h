// Classic text: the runs of the host's text objects as text objects of PDF.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

/// Writes a text object. Lines go out in pieces of at most 60 letters, each with its matrix; those
/// along a path letter by letter.
void textWorks(Walk& walk, Art text);

} // namespace corvane
