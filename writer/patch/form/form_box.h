// The BBox of a form that holds other things than the page's form did.
#pragma once

#include "reader/form/form_entries.h"
#include "writer/patch/form/edited_form.h"

#include <optional>

namespace corvane {

/// A greater box, where that of the page's form would cut off what a person sees; nothing where it
/// stays. What reaches beyond the page does not count.
std::optional<FormBox> enlargedBox(DocumentCache& cache, const PageBase& base,
                                   const EditedForm& form);

} // namespace corvane
