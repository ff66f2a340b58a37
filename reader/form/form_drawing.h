// Forms: a content of its own that `Do` draws, as a group.
//
// Source: PDF Reference, 4.9.
#pragma once

#include "objects/object.h"

#include <cstdint>

namespace corvane {

struct Interpreter;

/// Whether the host has groups that stand for forms.
bool hostHoldsForms();

/// Draws a form: an entry of the resources, a stream or a reference to one, and the stream that it
/// leads to. What it paints becomes a group, which is `ContentLevel::placed` then; null where
/// nothing is seen. A form that is drawn within itself, too deep, or once too often is counted as
/// left out.
void drawForm(Interpreter& interpreter, const Object& entry, const Object& stream);

/// The same of what an annotation looks like: the group stands for the annotation of that number,
/// and has no source.
void drawAppearance(Interpreter& interpreter, const Object& entry, const Object& stream,
                    std::int32_t annotation);

} // namespace corvane
