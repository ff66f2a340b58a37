#include "writer/patch/inserted_works.h"

#include "reader/content/art.h"
#include "reader/content/losses.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/fixed.h"
#include "runtime/reason.h"
#include "writer/art/object_works.h"
#include "writer/art/path_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/insertion_points.h"
#include "writer/patch/kept_works.h"
#include "writer/patch/movement.h"
#include "writer/patch/placed_image.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/text/text_works.h"

#include <algorithm>

namespace corvane {

std::vector<bool> groupsApart(const EditedArtwork& artwork, const PaintOrder& order) {
    std::vector<bool> apart(artwork.groups.size(), true);
    for (EditedIndex i = 0; i < artwork.objects.size(); ++i) {
        for (EditedIndex group = artwork.objects[i].group;
             order.stays[i] && group != 0 && apart[group]; group = artwork.groups[group].outer) {
            apart[group] = false;
        }
    }
    // The groups of layers are made by opening anyway.
    for (EditedIndex group = 0; group < artwork.groups.size(); ++group) {
        apart[group] = apart[group] && artwork.groups[group].outer != 0;
    }
    return apart;
}

void InsertedWorks::write(std::span<const Insertion> insertions, const Surroundings& inForce,
                          std::string_view reset) {
    setter_ = inForce.setter;
    isBehindNew_ = false;
    noneStyleWorks(walk_);
    enterWorks(walk_);
    const RealMatrix back =
        withoutSignedZeros(inverse(trace_.matrix(inForce.matrix)).value_or(RealMatrix()));
    if (back != RealMatrix()) {
        walk_.text.addMatrix(back);
        walk_.text.add("cm\n");
    }
    if (!reset.empty()) {
        walk_.text.add("/");
        walk_.text.add(reset);
        walk_.text.add(" gs\n");
    }
    for (const Insertion& insertion : insertions) {
        openGroups(insertion);
        writeObject(insertion);
    }
    closeGroups(0);
    leaveWorks(walk_);
}

/// Opens the groups around an object that are not in force at its place.
void InsertedWorks::openGroups(const Insertion& insertion) {
    std::vector<EditedIndex> around;
    for (EditedIndex group = artwork_.objects[insertion.object].group; group != 0;
         group = artwork_.groups[group].outer) {
        around.push_back(group);
    }
    std::ranges::reverse(around);
    std::vector<EditedIndex> wanted;
    std::uint32_t inForce = insertion.point.ownClips;
    for (const EditedIndex group : around) {
        const bool clips = artwork_.groups[group].clip != Art::null;
        if (clips && inForce > 0) {
            --inForce;
        } else if (clips || (inForce == 0 && apart_[group])) {
            wanted.push_back(group);
        }
    }
    const auto same = std::ranges::mismatch(open_, wanted);
    closeGroups(static_cast<std::size_t>(same.in1 - open_.begin()));
    for (auto group = same.in2; group != wanted.end(); ++group) {
        enterWorks(walk_);
        if (artwork_.groups[*group].clip != Art::null) {
            clipWorks(walk_, artwork_.groups[*group].clip);
        }
        open_.push_back(*group);
    }
}

void InsertedWorks::closeGroups(std::size_t left) {
    while (open_.size() > left) {
        leaveWorks(walk_);
        open_.pop_back();
    }
}

void InsertedWorks::writeObject(const Insertion& insertion) {
    const MatchedObject& object = matching_.objects[insertion.object];
    const EditedObject& edited = artwork_.objects[insertion.object];
    if (object.source != noSource) {
        writeSourced(object, edited, insertion.point.inForce.mark);
        return;
    }
    if (edited.kind == ArtKind::text) {
        newTextWorks(tools_, edited);
    } else if (edited.kind == ArtKind::placed) {
        newImageWorks(tools_, edited.art);
    } else {
        objectWorks(walk_, edited.art);
    }
    isBehindNew_ = true;
}

/// The state of text, what lies on the page moved.
void InsertedWorks::writeState(const PaintedArt& was, const RealMatrix& movement) {
    // A `gs` that set the font may set what other operators set again.
    const TraceIndex font = trace_.textSetting(was.setting).font;
    if (font != 0 && trace_.events()[font - 1].role == OperatorRole::external) {
        walk_.text.add(tools_.state.bytesOf(font - 1));
    }
    const Surroundings& own = trace_.events()[was.event].behind;
    const bool isMasked = (own.settings & softMaskSetting) != 0;
    tools_.state.write(own, {}, isMasked ? movement : RealMatrix());
}

/// Paths and bitmaps of a group.
void InsertedWorks::drawGlyphs(Art group) {
    ArtStack pending;
    pending.push(group);
    for (ArtStep step; pending.next(step);) {
        if (step.what == ArtStep::What::art && artKind(step.art) == ArtKind::placed) {
            newImageWorks(tools_, step.art);
        } else {
            stepWorks(walk_, step, pending);
        }
    }
}

/// What glyph procedures drew: shown again, or, where its insides were changed and the host
/// insists, drawn.
void InsertedWorks::writeGlyphs(const MatchedObject& object, const EditedObject& edited) {
    const PaintedArt& was = trace_.painted()[object.source];
    if (object.difference.letters) {
        const auto extension = knownExtension();
        if (!extension || !extension->overwrites) {
            noteReason(Reason::drawnLetters);
            failException(Exception::unpatchable);
        }
        tools_.state.writeOnArtboard(trace_.events()[was.event].behind);
        return drawGlyphs(edited.art);
    }
    const RealMatrix movement = object.difference.place
                                    ? movementOf(was.art, edited.art).value_or(RealMatrix())
                                    : RealMatrix();
    writeState(was, movement);
    movedGlyphsWorks(tools_, was, movement);
}

void InsertedWorks::writeText(const MatchedObject& object, const EditedObject& edited) {
    const PaintedArt& was = trace_.painted()[object.source];
    const bool isMasked = (trace_.events()[was.event].behind.settings & softMaskSetting) != 0;
    const RealMatrix movement =
        isMasked && object.difference.place ? movementOfText(base_, was, edited) : RealMatrix();
    writeState(was, movement);
    sourcedTextWorks(tools_, base_, was, edited, object.difference);
}

void InsertedWorks::writeImage(const MatchedObject& object, const EditedObject& edited) {
    const PaintedArt& was = trace_.painted()[object.source];
    const Surroundings& own = trace_.events()[was.event].behind;
    const bool isMasked = (own.settings & softMaskSetting) != 0;
    const RealMatrix movement =
        isMasked && object.difference.place ? movementOfImage(was.art, edited.art) : RealMatrix();
    tools_.state.write(own, {}, movement);
    imageWorks(tools_, was, edited.art, object.difference);
}

/// The state that an object had, and its own bytes, or what an edit made of them.
void InsertedWorks::writeSourced(const MatchedObject& object, const EditedObject& edited,
                                 TraceIndex marks) {
    const TraceIndex event = trace_.painted()[object.source].event;
    const Surroundings& own = trace_.events()[event].behind;
    // A layer of the file that hides the object goes on hiding it.
    std::vector<TraceIndex> layers;
    for (TraceIndex mark = own.mark; mark != 0; mark = trace_.mark(mark).outer) {
        const bool isAround = commonMark(trace_, mark, marks) == mark;
        if (trace_.mark(mark).isOptional && !isAround) {
            layers.push_back(mark);
        }
    }
    for (auto mark = layers.rbegin(); mark != layers.rend(); ++mark) {
        walk_.text.add(tools_.state.bytesOf(trace_.mark(*mark).event));
    }
    enterWorks(walk_);
    noneStyleWorks(walk_); // what follows goes past the shadow
    tools_.state.writeInitial(own, setter_, isBehindNew_);
    const PathSource source{event, artOf(base_, object.source)};
    const Art art = edited.art;
    if (edited.kind == ArtKind::text) {
        writeText(object, edited);
    } else if (edited.kind == ArtKind::group) {
        writeGlyphs(object, edited);
    } else if (edited.kind == ArtKind::placed) {
        writeImage(object, edited);
    } else if (!object.difference.any()) {
        tools_.state.write(own, {}, {});
        unchangedWorks(tools_, event);
    } else if (inverse(trace_.matrix(own.matrix))) {
        tools_.state.write(own, {}, movementOfPaint(tools_, source, art, object.difference));
        changedWorks(tools_, source, art, object.difference);
    } else {
        tools_.state.writeOnArtboard(own);
        artWorks(walk_, art);
    }
    leaveWorks(walk_);
    for (std::size_t i = 0; i < layers.size(); ++i) {
        walk_.text.add("EMC\n");
    }
}

} // namespace corvane
