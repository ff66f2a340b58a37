// Annotations of a page, form fields too, as they are seen.
//
// Source: PDF Reference, 8.4.
#pragma once

#include "host/artwork.h"
#include "objects/object.h"
#include "reader/document/cache.h"
#include "reader/form/form_entries.h"

#include <cstdint>
#include <vector>

namespace corvane {

struct Interpreter;
struct PageMatrix;

struct Annotation {
    std::int32_t number = 0; ///< of its object; 0: it has none
    ObjectOwner dictionary;
    FormBox place;          ///< in the page's own space
    ObjectOwner entry;      ///< what leads to its appearance; null: it has none to be seen
    ObjectOwner appearance; ///< the stream; null in the same way
};

/// Those of the page in use that have something to be seen, and links, from the back to the front.
/// Hidden ones and pop-up windows are not among them.
std::vector<Annotation> shownAnnotations(DocumentCache& cache);

/// Draws each as a group, in `container`. A link without an appearance is a path without paint; of
/// others without one the lines are drawn that their dictionaries describe. The interpreter begins
/// anew there, but for the number of forms and what it knows of the document.
void drawAnnotations(Interpreter& interpreter, const std::vector<Annotation>& annotations,
                     const PageMatrix& matrix, Art container);

} // namespace corvane
