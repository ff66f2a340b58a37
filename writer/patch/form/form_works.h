// Drawing forms of the page where the artwork has them.
#pragma once

#include "writer/patch/form/edited_form.h"
#include "writer/patch/patch_tools.h"

namespace corvane {

/// Draws what was a form of this content, under the CTM of its operator: by the page's own bytes,
/// or the object that takes its place. Raises `unpatchable` where nothing can be drawn there.
void formWorks(PatchTools& tools, const PaintedArt& was, const EditedForm& form);

/// Whether all that it takes is another name.
bool isDrawnInPlace(const EditedForm& form);

/// Draws a form that another content drew, in the space of the artboard.
void newFormWorks(PatchTools& tools, const EditedForm& form);

} // namespace corvane
