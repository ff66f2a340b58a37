// Forms: a content of its own that `Do` draws, as a group.
//
// Source: PDF Reference, 4.9.
#pragma once

#include "objects/object.h"

namespace corvane {

struct Interpreter;

/// Whether the host has groups that stand for forms.
bool hostHoldsForms();

/// Draws a form: an entry of the resources, a stream or a reference to one, and the stream that it
/// leads to. What it paints becomes a group, which is `ContentLevel::placed` then; null where
/// nothing is seen. A form that is drawn within itself, too deep, or once too often is counted as
/// left out.
void drawForm(Interpreter& interpreter, const Object& entry, const Object& stream);

} // namespace corvane
