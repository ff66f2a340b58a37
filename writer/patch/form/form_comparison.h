// What an edit did to a form of the page, as a whole.
#pragma once

#include "writer/patch/form/edited_form.h"

namespace corvane {

/// Finds out whether all that the form holds is as the page draws it, was moved as a whole, or is
/// something else. The forms within it were compared, and its text is laid out.
void compareForm(EditedForm& form);

} // namespace corvane
