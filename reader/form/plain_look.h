// What an annotation without an appearance looks like: the lines and boxes that its dictionary
// describes. Letters, ends of lines and clouds are not drawn.
//
// Source: PDF Reference, 8.4.5; where it leaves the look open, what most readers draw.
#pragma once

#include "host/artwork.h"
#include "objects/object.h"
#include "reader/document/cache.h"
#include "reader/form/form_entries.h"

namespace corvane {

struct Interpreter;

/// Whether annotations of its kind are drawn; of form fields those with a ground or a border.
bool hasPlainLook(DocumentCache& cache, const Object& annotation);

/// Paints it into a group; `place` is its rectangle.
void drawPlainLook(Interpreter& interpreter, const Object& annotation, const FormBox& place,
                   Art group);

} // namespace corvane
