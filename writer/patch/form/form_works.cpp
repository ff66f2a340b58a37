#include "writer/patch/form/form_works.h"

#include "runtime/exception.h"
#include "writer/art/space_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/works/kept_works.h"

#include <optional>

namespace corvane {

namespace {

/// The CTM under which the page drew the form.
const RealMatrix& spaceOf(const EditedForm& form) {
    const ContentTrace& around = form.base->around->trace;
    return around.matrix(around.events()[form.base->form->event].behind.matrix);
}

void drawWorks(PatchTools& tools, const EditedForm& form) {
    const bool isNew = form.number != 0;
    const FormTrace& former = *form.base->form;
    tools.walk.text.add("/");
    tools.walk.text.add(tools.resources.add(ResourceCategory::object,
                                            isNew ? form.number : former.object,
                                            isNew ? 0 : former.generation));
    tools.walk.text.add(" Do\n");
}

/// Whether the group has another clip than the form's own box.
bool hasOwnClip(const EditedForm& form) {
    return form.isClipChanged && !form.movement && form.clip != Art::null;
}

void clipFormWorks(PatchTools& tools, const EditedForm& form, const RealMatrix& ctm) {
    if (hasOwnClip(form)) {
        newClipWorks(tools, ctm, form.clip);
    }
}

} // namespace

void formWorks(PatchTools& tools, const PaintedArt& was, const EditedForm& form) {
    const TraceEvent& event = tools.trace.events()[was.event];
    const RealMatrix& ctm = tools.trace.matrix(event.behind.matrix);
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!back) {
        failException(Exception::unpatchable);
    }
    clipFormWorks(tools, form, ctm);
    if (form.movement) {
        spaceWorks(tools.walk, multiply(multiply(ctm, *form.movement), *back));
    }
    if (form.number != 0) {
        drawWorks(tools, form);
    } else {
        rangesWorks(tools, {{event.start, event.end}});
    }
}

bool isDrawnInPlace(const EditedForm& form) {
    return !form.movement && !hasOwnClip(form);
}

void newFormWorks(PatchTools& tools, const EditedForm& form) {
    enterWorks(tools.walk);
    clipFormWorks(tools, form, {});
    if (!tools.state.inherits()) {
        tools.state.writeInitial({}, 0, true);
    }
    stateWorks(tools.walk, stateOf(form.base->form->inherited));
    spaceWorks(tools.walk, multiply(spaceOf(form), form.movement.value_or(RealMatrix())));
    drawWorks(tools, form);
    leaveWorks(tools.walk);
}

} // namespace corvane
