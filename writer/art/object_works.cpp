#include "writer/art/object_works.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/reason.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "writer/art/drawn_looks.h"
#include "writer/art/layers.h"
#include "writer/art/path_works.h"
#include "writer/art/placed_works.h"
#include "writer/art/text/text_works.h"
#include "writer/image/image_works.h"
#include "writer/layer/layer_marks.h"

namespace corvane {

namespace {

using What = ArtStep::What;

TextDrawing& drawnTexts(const Walk& walk) {
    if (walk.texts == nullptr) {
        noteReason(Reason::textDrawnAnew);
        failException(Exception::unpatchable);
    }
    return *walk.texts;
}

/// The first child is the clip of the others.
void clippedWorks(Walk& walk, Art group, ArtStack& pending) {
    const Art clip = firstChild(group);
    if (clip == Art::null && rules().emptyLeftOut) {
        return;
    }
    enterWorks(walk);
    pending.enter(clip == Art::null ? Art::null : nextSibling(clip), What::leave);
    if (clip == Art::null) {
        return;
    }
    if (rules().readsText && isTextClip(clip)) {
        drawnTexts(walk).clip(walk, clip);
    } else if (rules().clipsByGroup) {
        clipWorks(walk, clip);
    } else if (artKind(clip) == ArtKind::text || !isTextClip(clip)) {
        pending.push(clip); // lines that clip one after the other would leave nothing to be seen
    }
}

void groupWorks(Walk& walk, Art group, ArtStack& pending, bool writesGroups) {
    std::uint8_t clipped = 0;
    callHost(slot::getGroupClipped, group, &clipped);
    if (clipped != 0) {
        clippedWorks(walk, group, pending);
        return;
    }
    const Art first = firstChild(group);
    if (!writesGroups) {
        pending.enter(first, What::end);
    } else if (first != Art::null) {
        enterWorks(walk);
        pending.enter(first, What::leave);
    }
}

/// Art of a kind that only its host knows: what it holds is written, if it can be had.
void unknownWorks(Art art, ArtStack& pending) {
    Art first = Art::null;
    if (guarded([&] { first = firstChild(art); }) != Exception::none) {
        resetException();
        raiseWarning(Warning::unknownArt);
    }
    pending.enter(first, What::end);
}

void visitPlain(Walk& walk, Art art, ArtStack& pending, bool writesGroups) {
    switch (static_cast<std::int16_t>(artKind(art))) {
    case 0:
        return unknownWorks(art, pending);
    case 1:
        return groupWorks(walk, art, pending, writesGroups);
    case 2:
        return pathWorks(walk, art);
    case 3:
        return compoundWorks(walk, art);
    case 4:
        return rules().readsText ? drawnTexts(walk).write(walk, art) : textWorks(walk, art);
    case 5:
    case 6:
        return; // kinds that are not drawn
    case 7:
        return rules().readsImages ? drawnImageWorks(walk, art) : placedWorks(walk, art);
    default:
        failException(Exception::type);
    }
}

void visitWorks(Walk& walk, Art art, ArtStack& pending, bool writesGroups) {
    if (callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
    if (walk.others != nullptr && walk.others->contains(art)) {
        return;
    }
    if (walk.layers != nullptr && artKind(art) == ArtKind::group) {
        if (const ContentLayer layer = layerOf(art); layer != ContentLayer::null) {
            walk.layers->begin(walk.text, layer);
            pending.enter(Art::null, What::show);
        }
    }
    if (walk.looks != nullptr) {
        const Appearance appearance = appearanceOf(art);
        if (appearance != Appearance()) {
            return lookedWorks(walk, art, appearance);
        }
    }
    visitPlain(walk, art, pending, writesGroups);
}

void finishWorks(Walk& walk, ArtStack& pending) {
    for (ArtStep step; pending.next(step);) {
        stepWorks(walk, step, pending);
    }
}

} // namespace

void plainWorks(Walk& walk, Art art) {
    ArtStack pending;
    visitPlain(walk, art, pending, false);
    finishWorks(walk, pending);
}

void objectWorks(Walk& walk, Art art, ArtStack& pending) {
    visitWorks(walk, art, pending, rules().writesGroups);
}

void layerArtWorks(Walk& walk, Art art, ArtStack& pending) {
    visitWorks(walk, art, pending, false);
}

void stepWorks(Walk& walk, const ArtStep& step, ArtStack& pending) {
    switch (step.what) {
    case What::art:
        return objectWorks(walk, step.art, pending);
    case What::end:
        return;
    case What::leave:
        return leaveWorks(walk);
    case What::show:
        return LayerMarks::end(walk.text);
    }
}

void objectWorks(Walk& walk, Art art) {
    ArtStack pending;
    pending.push(art);
    finishWorks(walk, pending);
}

} // namespace corvane
