#include "writer/patch/works/inserted_works.h"

#include "objects/identity.h"
#include "reader/content/art.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/fixed.h"
#include "runtime/reason.h"
#include "writer/art/object_works.h"
#include "writer/art/path_works.h"
#include "writer/art/space_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/compare/look_difference.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/form/form_works.h"
#include "writer/patch/place/trace_links.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/text/text_works.h"
#include "writer/patch/works/kept_works.h"
#include "writer/patch/works/placed_image.h"
#include "writer/patch/works/shading_works.h"
#include "writer/patch/works/stencil_works.h"

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

/// Whether the content begins with settings of `gs` that were made around it.
bool InsertedWorks::beginsSet() const {
    return trace_.atStart().settings != 0;
}

/// Sets what `gs` may have set as on a new page.
void InsertedWorks::resetWorks() {
    std::int32_t& number = tools_.ofPage.resetState;
    if (number == 0) {
        number = nextIdentity();
    }
    walk_.text.add("/");
    walk_.text.add(tools_.resources.add(ResourceCategory::graphicsState, number, 0));
    walk_.text.add(" gs\n");
}

/// Within a transparency group, in the space of the artboard: sets how what the content paints is
/// laid over what is behind it where nothing in it says otherwise.
void InsertedWorks::inheritedWorks() {
    if (base_.form != nullptr) {
        stateWorks(walk_, stateOf(base_.form->inherited));
    }
}

/// What is in layers of its own stands in them as a whole, so that they are layers and not groups
/// in a group when the page is opened.
void InsertedWorks::write(std::span<const Insertion> insertions, const Surroundings& inForce) {
    while (!insertions.empty()) {
        std::vector<EditedIndex> layers = layersBefore(insertions.front());
        const auto end = std::ranges::find_if(insertions, [&](const Insertion& insertion) {
            return layersBefore(insertion) != layers;
        });
        const auto count = static_cast<std::size_t>(end - insertions.begin());
        for (const EditedIndex layer : layers) {
            tools_.marks.begin(walk_.text, artwork_.groups[layer].layer);
        }
        open_ = std::move(layers);
        writeWithin(insertions.first(count), inForce);
        closeGroups(0);
        insertions = insertions.subspan(count);
    }
}

void InsertedWorks::writeWithin(std::span<const Insertion> insertions,
                                const Surroundings& inForce) {
    const std::size_t layers = open_.size();
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
    if (inForce.settings != 0 && !beginsSet()) {
        resetWorks();
    }
    for (const Insertion& insertion : insertions) {
        openGroups(insertion);
        writeObject(insertion);
    }
    closeGroups(layers);
    leaveWorks(walk_);
}

/// The groups around an object that are not in force at its place, from the outermost.
std::vector<EditedIndex> InsertedWorks::missingGroups(const Insertion& insertion) const {
    std::vector<EditedIndex> around;
    for (EditedIndex group = artwork_.objects[insertion.object].group; group != 0;
         group = artwork_.groups[group].outer) {
        around.push_back(group);
    }
    std::ranges::reverse(around);
    std::vector<EditedIndex> wanted;
    std::uint32_t inForce = insertion.point.ownClips;
    std::uint32_t layersInForce = insertion.point.ownLayers;
    for (const EditedIndex group : around) {
        const bool clips = artwork_.groups[group].clip != Art::null;
        const bool isLayer = artwork_.groups[group].layer != ContentLayer::null;
        if (clips && inForce > 0) {
            --inForce;
        } else if (isLayer && layersInForce > 0) {
            --layersInForce;
        } else if (clips || isLayer || artwork_.groups[group].isLooked() ||
                   (inForce == 0 && apart_[group])) {
            wanted.push_back(group);
        }
    }
    return wanted;
}

/// The layers of those that no other group is around.
std::vector<EditedIndex> InsertedWorks::layersBefore(const Insertion& insertion) const {
    std::vector<EditedIndex> groups = missingGroups(insertion);
    groups.erase(std::ranges::find_if(groups,
                                      [&](EditedIndex group) {
                                          return artwork_.groups[group].layer == ContentLayer::null;
                                      }),
                 groups.end());
    return groups;
}

void InsertedWorks::openGroups(const Insertion& insertion) {
    const std::vector<EditedIndex> wanted = missingGroups(insertion);
    const auto same = std::ranges::mismatch(open_, wanted);
    closeGroups(static_cast<std::size_t>(same.in1 - open_.begin()));
    for (auto group = same.in2; group != wanted.end(); ++group) {
        if (artwork_.groups[*group].layer != ContentLayer::null) {
            tools_.marks.begin(walk_.text, artwork_.groups[*group].layer);
        } else if (artwork_.groups[*group].isLooked()) {
            beginForm();
        } else {
            enterWorks(walk_);
        }
        if (artwork_.groups[*group].clip != Art::null) {
            clip(artwork_.groups[*group]);
        }
        open_.push_back(*group);
    }
}

void InsertedWorks::clip(const EditedGroup& group) {
    if (isTextClip(group.clip)) {
        textClipWorks(tools_, artwork_, group);
    } else {
        clipWorks(walk_, group.clip);
    }
}

void InsertedWorks::closeGroups(std::size_t left) {
    while (open_.size() > left) {
        const EditedIndex group = open_.back();
        open_.pop_back();
        if (artwork_.groups[group].layer != ContentLayer::null) {
            LayerMarks::end(walk_.text);
        } else if (artwork_.groups[group].isLooked()) {
            endForm(artwork_.groups[group].appearance);
        } else {
            leaveWorks(walk_);
        }
    }
}

/// What comes next goes into a form, which is drawn as one thing.
void InsertedWorks::beginForm() {
    walk_.text.flush();
    around_.push_back(tools_.sink.take());
    noneStyleWorks(walk_);
    // The page's patterns go on lying in the space of the content.
    const std::optional<RealMatrix> toOwn = inverse(space_);
    if (!toOwn) {
        failException(Exception::unpatchable);
    }
    if (space_ != RealMatrix()) {
        spaceWorks(walk_, *toOwn);
    }
}

void InsertedWorks::endForm(const Appearance& appearance) {
    walk_.text.flush();
    const std::string_view name = tools_.looks.addGroup(tools_.sink.take(), appearance, space_);
    walk_.text.add(around_.back());
    around_.pop_back();
    enterWorks(walk_);
    stateWorks(walk_, beginsSet() ? wholeStateOf(appearance) : stateOf(appearance));
    walk_.text.add("/");
    walk_.text.add(name);
    walk_.text.add(" Do\n");
    leaveWorks(walk_);
}

void InsertedWorks::writeObject(const Insertion& insertion) {
    const MatchedObject& object = matching_.objects[insertion.object];
    const EditedObject& edited = artwork_.objects[insertion.object];
    if (object.source != noSource) {
        writeSourced(object, edited, insertion.point.inForce.mark);
        return;
    }
    if (!tools_.state.inherits()) {
        writeNew(edited);
        isBehindNew_ = true;
        return;
    }
    enterWorks(walk_);
    if (beginsSet()) {
        resetWorks();
    }
    writeNew(edited);
    leaveWorks(walk_);
}

/// In the space of the artboard.
void InsertedWorks::writeNew(const EditedObject& edited) {
    if (edited.form == nullptr && edited.kind != ArtKind::text && edited.kind != ArtKind::placed) {
        if (edited.appearance == Appearance()) {
            plainWorks(walk_, edited.art);
        } else {
            lookedWorks(walk_, edited.art, edited.appearance);
        }
        return;
    }
    Appearance appearance = edited.appearance;
    if (edited.kind == ArtKind::text) {
        const TextRun run = runOf(edited.art, edited.run);
        appearance.fillOpacity *= run.fillOpacity;
        appearance.strokeOpacity *= run.strokeOpacity;
    }
    const LookState look = stateOf(appearance);
    if (!look.isEmpty()) {
        enterWorks(walk_);
        stateWorks(walk_, look);
    }
    if (edited.form != nullptr) {
        newFormWorks(tools_, *edited.form);
    } else if (edited.kind == ArtKind::text) {
        newTextWorks(tools_, edited);
    } else {
        plainWorks(walk_, edited.art);
    }
    if (!look.isEmpty()) {
        leaveWorks(walk_);
    }
}

/// The state of text, what lies on the page moved.
void InsertedWorks::writeState(const PaintedArt& was, const ArtDifference& difference,
                               const RealMatrix& movement) {
    // A `gs` that set the font may set what other operators set again.
    const TraceIndex font = trace_.textSetting(was.setting).font;
    if (font != 0 && trace_.events()[font - 1].role == OperatorRole::external) {
        walk_.text.add(tools_.state.bytesOf(font - 1));
    }
    const Surroundings& own = trace_.events()[was.event].behind;
    const bool isMasked = movesMask(own, difference);
    tools_.state.write(own, {},
                       {.masks = isMasked ? movement : RealMatrix(),
                        .patterns = difference.movesPaint ? movement : RealMatrix()});
    lookWorks(tools_, trace_.matrix(own.matrix), difference.look);
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
        return objectWorks(walk_, edited.art);
    }
    const RealMatrix movement = object.difference.place
                                    ? movementOf(was.art, edited.art).value_or(RealMatrix())
                                    : RealMatrix();
    writeState(was, object.difference, movement);
    movedGlyphsWorks(tools_, was, movement);
}

void InsertedWorks::writeText(const MatchedObject& object, const EditedObject& edited) {
    const PaintedArt& was = trace_.painted()[object.source];
    const bool isMasked = movesMask(trace_.events()[was.event].behind, object.difference);
    const RealMatrix movement =
        (isMasked || object.difference.movesPaint) && object.difference.place
            ? movementOfText(base_, was, edited)
            : RealMatrix();
    writeState(was, object.difference, movement);
    sourcedTextWorks(tools_, base_, was, edited, object.difference);
}

void InsertedWorks::writeImage(const MatchedObject& object, const EditedObject& edited) {
    const PaintedArt& was = trace_.painted()[object.source];
    const Surroundings& own = trace_.events()[was.event].behind;
    const RealMatrix movement = object.difference.place && movesMask(own, object.difference)
                                    ? movementOfImage(was.art, edited.art)
                                    : RealMatrix();
    tools_.state.write(own, {}, {.masks = movement, .patterns = {}});
    lookWorks(tools_, trace_.matrix(own.matrix), object.difference.look);
    imageWorks(tools_, was, edited.art, object.difference);
}

void InsertedWorks::writeForm(const MatchedObject& object, const EditedForm& form) {
    const PaintedArt& was = trace_.painted()[object.source];
    const Surroundings& own = trace_.events()[was.event].behind;
    const RealMatrix movement = form.movement.value_or(RealMatrix());
    tools_.state.write(own, {},
                       {.masks = movesMask(own, object.difference) ? movement : RealMatrix(),
                        .patterns = tools_.state.namesPattern(own) ? movement : RealMatrix()});
    lookWorks(tools_, trace_.matrix(own.matrix), object.difference.look);
    formWorks(tools_, was, form);
}

/// Marks of layers of which the artwork does not say whether the object is in them: one that hides
/// the object goes on hiding it. Those that it does say stand around the object already, but for
/// the layer of an image or a form that names one itself.
std::vector<TraceIndex> InsertedWorks::keptLayers(const MatchedObject& object,
                                                  const EditedObject& edited,
                                                  TraceIndex marks) const {
    const PaintedArt& was = trace_.painted()[object.source];
    LayerChain told = base_.layers.around(was.art);
    told = told == PatchLayers::notTold ? 0 : told;
    const LayerChains& chains = base_.layers.chains();
    std::vector<TraceIndex> kept;
    for (TraceIndex mark = trace_.events()[was.event].behind.mark; mark != 0;
         mark = trace_.mark(mark).outer) {
        const MarkLink& link = trace_.mark(mark);
        const bool isTold = link.layer != ContentLayer::null && chains.holds(told, link.layer);
        const bool isAround = commonMark(trace_, mark, marks) == mark;
        if (link.isOptional && !isTold && !isAround) {
            kept.push_back(mark);
        }
    }
    const LayerChain now = artwork_.groups[edited.group].layers;
    for (LayerChain chain = told; chain != 0; chain = chains.outer(chain)) {
        const ContentLayer layer = chains.innermost(chain);
        if (!chains.holds(now, layer) && !isMarked(trace_.events()[was.event].behind.mark, layer)) {
            noteReason(Reason::ownLayer);
            failException(Exception::unpatchable);
        }
    }
    return kept;
}

bool InsertedWorks::isMarked(TraceIndex mark, ContentLayer layer) const {
    while (mark != 0 && trace_.mark(mark).layer != layer) {
        mark = trace_.mark(mark).outer;
    }
    return mark != 0;
}

/// The state that an object had, and its own bytes, or what an edit made of them.
void InsertedWorks::writeSourced(const MatchedObject& object, const EditedObject& edited,
                                 TraceIndex marks) {
    const TraceIndex event = trace_.painted()[object.source].event;
    const Surroundings& own = trace_.events()[event].behind;
    const std::vector<TraceIndex> layers = keptLayers(object, edited, marks);
    for (auto mark = layers.rbegin(); mark != layers.rend(); ++mark) {
        walk_.text.add(tools_.state.bytesOf(trace_.mark(*mark).event));
    }
    enterWorks(walk_);
    noneStyleWorks(walk_); // what follows goes past the shadow
    if (!around_.empty()) {
        inheritedWorks(); // a transparency group begins without it
    }
    tools_.state.writeInitial(own, setter_, isBehindNew_);
    const PathSource source{event, artOf(base_, object.source)};
    const Art art = edited.art;
    if (edited.kind == ArtKind::text) {
        writeText(object, edited);
    } else if (edited.form != nullptr) {
        writeForm(object, *edited.form);
    } else if (edited.kind == ArtKind::group) {
        writeGlyphs(object, edited);
    } else if (trace_.painted()[object.source].isShading) {
        tools_.state.write(own, {}, {});
        lookWorks(tools_, trace_.matrix(own.matrix), object.difference.look);
        shadingWorks(tools_, trace_.painted()[object.source], art, object.difference);
    } else if (trace_.painted()[object.source].isStencil) {
        const PaintedArt& was = trace_.painted()[object.source];
        tools_.state.write(own, {}, movementOfStencil(tools_, was, art, object.difference));
        stencilWorks(tools_, was, edited, object.difference);
    } else if (edited.kind == ArtKind::placed) {
        writeImage(object, edited);
    } else if (!object.difference.any()) {
        tools_.state.write(own, {}, {});
        unchangedWorks(tools_, event);
    } else if (inverse(trace_.matrix(own.matrix))) {
        tools_.state.write(own, {}, movementOfPaint(tools_, source, art, object.difference));
        lookWorks(tools_, trace_.matrix(own.matrix), object.difference.look);
        changedWorks(tools_, source, art, object.difference);
    } else {
        tools_.state.writeOnArtboard(own);
        stateWorks(walk_, object.difference.look);
        artWorks(walk_, art);
    }
    leaveWorks(walk_);
    for (std::size_t i = 0; i < layers.size(); ++i) {
        walk_.text.add("EMC\n");
    }
}

} // namespace corvane
