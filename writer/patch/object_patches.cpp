#include "writer/patch/object_patches.h"

#include "reader/content/losses.h"
#include "runtime/exception.h"
#include "writer/art/outline.h"
#include "writer/art/style_works.h"
#include "writer/patch/form/form_works.h"
#include "writer/patch/works/kept_works.h"
#include "writer/patch/works/placed_image.h"
#include "writer/patch/works/shading_works.h"
#include "writer/patch/works/stencil_works.h"

#include <algorithm>

namespace corvane {

namespace {

/// Whether tiles of a stroke are to be seen through otherwise: readers heed that only of groups.
bool isTiledStroke(Art art, const ArtDifference& difference) {
    const PathStyle style = leadingStyle(art);
    return difference.look.strokeOpacity && *difference.look.strokeOpacity != 1 &&
           style.strokePaint != 0 && style.stroke.kind == ColourKind::pattern;
}

} // namespace

void ObjectPatches::addTo(std::vector<Patch>& patches) {
    patches_ = &patches;
    PaintedIndex next = 0;
    for (TraceIndex event = 0; event < trace_.events().size(); ++event) {
        const TraceEvent& path = trace_.events()[event];
        if (path.role == OperatorRole::show && path.art != Art::null) {
            next += trace_.countParts(next);
        }
        const bool mayBeObject =
            path.role == OperatorRole::object || path.role == OperatorRole::endImage;
        if (mayBeObject && path.art != Art::null) {
            patchObject(next++);
        }
        if (path.role == OperatorRole::paint && path.art != Art::null) {
            patchShading(next++);
        }
        if (path.role != OperatorRole::paintPath || path.isFailed) {
            continue;
        }
        const PaintedIndex source = path.art == Art::null ? noSource : next++;
        const bool paints = source != noSource || path.hidesFill || path.hidesStroke;
        const Paint paint = source != noSource ? paintOf(source)
                            : paints           ? Paint::kept
                                               : Paint::none;
        patchPath(event, source, paint, clipOf(event));
    }
}

ObjectPatches::Paint ObjectPatches::paintOf(PaintedIndex source) const {
    const EditedIndex owner = matching_.owners[source];
    if (owner == noSource || !order_.stays[owner]) {
        return Paint::gone;
    }
    return matching_.objects[owner].difference.any() ? Paint::changed : Paint::kept;
}

/// The clip that the path becomes; 0: none.
TraceIndex ObjectPatches::linkOf(TraceIndex path) const {
    const TraceIndex link = trace_.events()[path].behind.clip;
    return link != 0 && trace_.clip(link).event == path ? link : 0;
}

ObjectPatches::Clip ObjectPatches::clipOf(TraceIndex path) const {
    const TraceIndex link = linkOf(path);
    return link == 0                     ? Clip::none
           : clips_.released[link]       ? Clip::released
           : clips_.changedBy[link] != 0 ? Clip::changed
                                         : Clip::kept;
}

void ObjectPatches::remove(TraceIndex path) {
    const TraceEvent& event = trace_.events()[path];
    for (const ByteRange& range : constructionBytes(trace_, path, true)) {
        // Of two operators that stay the white space between them may be in the range.
        patches_->push_back({range, range.end < event.word ? " " : ""});
    }
    patches_->push_back({{event.word, event.end}, ""});
}

void ObjectPatches::removeClipWords(TraceIndex path) {
    for (TraceIndex word = firstWithin(trace_, path); word < path; ++word) {
        const TraceEvent& event = trace_.events()[word];
        if (event.role == OperatorRole::clipWord && !event.isFailed) {
            patches_->push_back({{event.start, event.end}, ""});
        }
    }
}

void ObjectPatches::drawChanged(PaintedIndex source) {
    const EditedIndex owner = matching_.owners[source];
    const Art art = artwork_.objects[owner].art;
    const ArtDifference& difference = matching_.objects[owner].difference;
    const PathSource path{trace_.painted()[source].event, artOf(base_, source)};
    noneStyleWorks(tools_.walk);
    enterWorks(tools_.walk);
    moveAlong(path.event, movementOfPaint(tools_, path, art, difference));
    lookWorks(tools_, trace_.matrix(trace_.events()[path.event].behind.matrix), difference.look);
    if (isTiledStroke(art, difference)) {
        drawSeenThrough(path.event, art, artwork_.objects[owner].appearance);
    } else {
        changedWorks(tools_, path, art, difference);
    }
    leaveWorks(tools_.walk);
}

void ObjectPatches::enterSpace(const RealMatrix& space) {
    if (space != RealMatrix()) {
        tools_.walk.text.addMatrix(withoutSignedZeros(space));
        tools_.walk.text.add("cm\n");
    }
}

/// Draws a path anew, with its opacities told to each of its parts.
void ObjectPatches::drawSeenThrough(TraceIndex event, Art art, const Appearance& appearance) {
    const std::optional<RealMatrix> back =
        inverse(trace_.matrix(trace_.events()[event].behind.matrix));
    if (!back) {
        failException(Exception::unpatchable);
    }
    stateWorks(tools_.walk, {.fillOpacity = 1, .strokeOpacity = 1});
    enterSpace(*back);
    lookedWorks(tools_.walk, art,
                {.fillOpacity = appearance.opacity * appearance.fillOpacity,
                 .strokeOpacity = appearance.opacity * appearance.strokeOpacity});
}

/// Sets again what lies on the page and moves with an object.
void ObjectPatches::moveAlong(TraceIndex event, const PageMovement& movement) {
    if (movement.any()) {
        const Surroundings& own = trace_.events()[event].behind;
        tools_.state.write(own, trace_.matrix(own.matrix), movement);
    }
}

void ObjectPatches::patchObject(PaintedIndex source) {
    const Paint paint = paintOf(source);
    const PaintedArt& was = trace_.painted()[source];
    const TraceEvent& event = trace_.events()[was.event];
    if (paint == Paint::gone) {
        patches_->push_back({{event.start, event.end}, " "});
    }
    if (paint != Paint::changed) {
        return;
    }
    const EditedIndex owner = matching_.owners[source];
    const ArtDifference& difference = matching_.objects[owner].difference;
    const EditedObject& is = artwork_.objects[owner];
    if (was.isForm && isDrawnInPlace(*is.form) && difference.look.isEmpty()) {
        formWorks(tools_, was, *is.form);
        patches_->push_back({{event.start, event.end}, tools_.taken()});
        return;
    }
    noneStyleWorks(tools_.walk);
    enterWorks(tools_.walk);
    if (was.isStencil) {
        moveAlong(was.event, movementOfStencil(tools_, was, is.art, difference));
        stencilWorks(tools_, was, is, difference);
    } else {
        if (difference.place) {
            const RealMatrix movement =
                was.isForm ? *is.form->movement : movementOfImage(was.art, is.art);
            const bool isMasked = movesMask(event.behind, difference);
            const bool isPatterned = was.isForm && tools_.state.namesPattern(event.behind);
            moveAlong(was.event, {.masks = isMasked ? movement : RealMatrix(),
                                  .patterns = isPatterned ? movement : RealMatrix()});
        }
        lookWorks(tools_, trace_.matrix(event.behind.matrix), difference.look);
        if (was.isForm) {
            formWorks(tools_, was, *is.form);
        } else {
            imageWorks(tools_, was, is.art, difference);
        }
    }
    leaveWorks(tools_.walk);
    patches_->push_back({{event.start, event.end}, "\n" + tools_.taken()});
}

void ObjectPatches::patchShading(PaintedIndex source) {
    const Paint paint = paintOf(source);
    const PaintedArt& was = trace_.painted()[source];
    const TraceEvent& event = trace_.events()[was.event];
    if (paint == Paint::gone) {
        patches_->push_back({{event.start, event.end}, " "});
    }
    if (paint != Paint::changed) {
        return;
    }
    const EditedIndex owner = matching_.owners[source];
    const ArtDifference& difference = matching_.objects[owner].difference;
    noneStyleWorks(tools_.walk);
    enterWorks(tools_.walk);
    lookWorks(tools_, trace_.matrix(event.behind.matrix), difference.look);
    shadingWorks(tools_, was, artwork_.objects[owner].art, difference);
    leaveWorks(tools_.walk);
    patches_->push_back({{event.start, event.end}, "\n" + tools_.taken()});
}

void ObjectPatches::patchPath(TraceIndex path, PaintedIndex source, Paint paint, Clip clip) {
    const bool staysClip = clip == Clip::none || clip == Clip::kept;
    if (staysClip && (paint == Paint::none || paint == Paint::kept)) {
        return;
    }
    const TraceEvent& event = trace_.events()[path];
    if (clip == Clip::none && paint == Paint::gone) {
        return remove(path);
    }
    if (clip == Clip::kept && paint == Paint::gone) {
        patches_->push_back({{event.word, event.end}, " n"});
        return;
    }
    if (clip == Clip::released && paint != Paint::changed) {
        return paint == Paint::kept ? removeClipWords(path) : remove(path);
    }
    if (!isPlainPath(trace_, path)) {
        failException(Exception::unpatchable);
    }
    if (paint == Paint::changed) {
        drawChanged(source);
    } else if (paint == Paint::kept) {
        unchangedWorks(tools_, path);
    }
    if (clip == Clip::kept) {
        clipOnlyWorks(tools_, path, Art::null);
    } else if (clip == Clip::changed) {
        clipOnlyWorks(tools_, path, artwork_.groups[clips_.changedBy[linkOf(path)]].clip);
    }
    patches_->push_back({{event.start, event.end}, "\n" + tools_.taken()});
}

} // namespace corvane
