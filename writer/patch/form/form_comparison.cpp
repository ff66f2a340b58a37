#include "writer/patch/form/form_comparison.h"

#include "host/pen.h"
#include "reader/content/art.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"
#include "writer/art/outline.h"
#include "writer/art/style_works.h"
#include "writer/art/text/text_clip.h"
#include "writer/image/image_works.h"
#include "writer/patch/compare/clip_matching.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace corvane {

namespace {

/// Whether all that the content paints is there, and nothing else, in its order.
bool isComplete(const EditedForm& form) {
    const Matching& matching = form.matching;
    bool isSame = matching.objects.size() == matching.owners.size();
    for (std::size_t i = 0; isSame && i < matching.objects.size(); ++i) {
        isSame = matching.objects[i].source == i && !matching.objects[i].isCopy;
    }
    return isSame;
}

/// Whether some of it is laid over the rest as one thing, as no content of the page does it.
bool holdsWhole(const EditedArtwork& artwork) {
    return std::ranges::any_of(artwork.objects.items(), [&](const EditedObject& object) {
        return artwork.wholeAround(object) != 0;
    });
}

bool isUnchanged(const EditedForm& form) {
    const BaseContent& base = *form.base;
    if (std::ranges::any_of(form.matching.objects,
                            [](const MatchedObject& object) { return object.difference.any(); })) {
        return false;
    }
    const ClipMatching clips = matchClips(base, form.inside, form.matching);
    for (TraceIndex link = 1; link < clips.released.size(); ++link) {
        if (clips.released[link] || clips.changedBy[link] != 0) {
            return false;
        }
    }
    for (EditedIndex i = 0; i < form.inside.objects.size(); ++i) {
        const TraceIndex clip = base.trace.clipAround(base.trace.painted()[i].event);
        if (!isClippedAlike(base, form.inside, clips, clip, form.inside.objects[i])) {
            return false;
        }
    }
    return true;
}

/// Whether all that the content paints is in the layers in which it was.
bool hasSameLayers(const EditedForm& form) {
    const std::span<const EditedObject> objects = form.inside.objects.items();
    for (EditedIndex i = 0; form.base->layers.any() && i < objects.size(); ++i) {
        const LayerChain now = form.inside.groups[objects[i].group].layers;
        if (!form.base->layers.isAlike(form.base->trace.painted()[i].art, now)) {
            return false;
        }
    }
    return true;
}

/// Whether its paint lies on the page, and not in the space of the path.
bool liesOnPage(const PathStyle& style) {
    const auto lies = [](std::uint8_t isPainted, const Colour& colour) {
        return isPainted != 0 &&
               (colour.kind == ColourKind::gradient || colour.kind == ColourKind::pattern);
    };
    return lies(style.fillPaint, style.fill) || lies(style.strokePaint, style.stroke);
}

/// Letters have no pen.
PathStyle moved(PathStyle style, const RealMatrix& movement, bool isText) {
    const std::optional<StretchedPen> pen =
        isText ? std::nullopt : penUnder(multiply(penMatrix(style.pen), movement));
    style.pen = pen ? pen->pen : Pen();
    return stretched(style, pen ? pen->stretch : meanStretch(movement));
}

/// Whether everything was moved by one matrix, which it finds.
class Mover {
public:
    explicit Mover(const EditedForm& form)
        : form_(form), trace_(form.base->trace), compared_(form.inside.groups.size()) {}

    std::optional<RealMatrix> movement() {
        if (form_.clip != Art::null && !addArt(form_.base->form->box, form_.clip)) {
            return std::nullopt;
        }
        const std::span<const EditedObject> objects = form_.inside.objects.items();
        for (EditedIndex i = 0; i < objects.size(); ++i) {
            if (!addObject(i, objects[i]) || !addClips(i, objects[i])) {
                return std::nullopt;
            }
        }
        const std::optional<RealMatrix> found = movementBetween(from_.items(), to_.items());
        if (!found || !inverse(*found)) {
            return std::nullopt;
        }
        for (EditedIndex i = 0; i < objects.size(); ++i) {
            if (!hasSamePaint(i, objects[i], *found)) {
                return std::nullopt;
            }
        }
        return found;
    }

private:
    const PaintedArt& was(EditedIndex i) const { return trace_.painted()[i]; }

    bool addArt(Art was, Art is) {
        const ChargedList<Subpath> ofWas = subpathsWithin(was);
        const ChargedList<Subpath> ofIs = subpathsWithin(is);
        addPoints(from_, was);
        addPoints(to_, is);
        return from_.size() == to_.size() && std::ranges::equal(ofWas.items(), ofIs.items(), {},
                                                                &Subpath::closed, &Subpath::closed);
    }

    bool addClip(Art was, Art is) {
        if (!isTextClip(was) && !isTextClip(is)) {
            return addArt(was, is);
        }
        return isTextClip(was) && isTextClip(is) && addTextClip(was, is);
    }

    bool addTextClip(Art was, Art is) {
        const ChargedList<Art> former = clipTexts(was);
        const ChargedList<Art> texts = clipTexts(is);
        if (!std::ranges::equal(former.items(), texts.items(), sameLetters)) {
            return false;
        }
        for (std::size_t i = 0; i < texts.size(); ++i) {
            addFrames(frameOf(former[i], runOf(former[i], 0), 0),
                      frameOf(texts[i], runOf(texts[i], 0), 0), 1);
        }
        return true;
    }

    void addFrames(const RealMatrix& was, const RealMatrix& is, double side) {
        for (const RealPoint& corner : {RealPoint{0, 0}, RealPoint{side, 0}, RealPoint{0, side}}) {
            from_.push(transform(was, corner));
            to_.push(transform(is, corner));
        }
    }

    bool addObject(EditedIndex i, const EditedObject& is) {
        if (was(i).isForm) {
            constexpr double inch = 72;
            addFrames({}, is.form->movement.value_or(RealMatrix()), inch);
            return !is.form->isChanged;
        }
        if (was(i).isImage) {
            addFrames(realMatrix(placedImage(was(i).art).matrix),
                      realMatrix(placedImage(is.art).matrix), 1);
            return true;
        }
        if (was(i).setting == 0 || was(i).isDrawn) {
            return addArt(was(i).art, is.art);
        }
        addFrames(frameOfPage(*form_.base, was(i)),
                  frameOf(is.art, runOf(is.art, is.run), is.start), 1);
        return true;
    }

    /// The clips around the object, of which the page and the artwork must have the same.
    bool addClips(EditedIndex i, const EditedObject& is) {
        TraceIndex clip = trace_.clipAround(was(i).event);
        EditedIndex group = is.group;
        if (clip == lastClip_ && group == lastGroup_) {
            return true;
        }
        lastClip_ = clip;
        lastGroup_ = group;
        for (;; clip = trace_.clip(clip).outer, group = form_.inside.groups[group].outer) {
            while (clip != 0 && trace_.clip(clip).art == Art::null) {
                clip = trace_.clip(clip).outer;
            }
            while (group != 0 && form_.inside.groups[group].clip == Art::null) {
                group = form_.inside.groups[group].outer;
            }
            if (clip == 0 || group == 0) {
                return clip == 0 && group == 0;
            }
            if (compared_[group] != 0) {
                return compared_[group] == clip;
            }
            compared_[group] = clip;
            if (!addClip(trace_.clip(clip).art, form_.inside.groups[group].clip)) {
                return false;
            }
        }
    }

    /// Where it differs only as what is moved so must.
    bool hasSamePaint(EditedIndex i, const EditedObject& is, const RealMatrix& movement) const {
        ArtDifference difference = form_.matching.objects[i].difference;
        const bool isPath = !was(i).isForm && !was(i).isImage && was(i).setting == 0;
        const bool isText = was(i).setting != 0 && !was(i).isDrawn;
        if (isPath || isText) {
            const PathStyle style = isPath
                                        ? leadingStyle(was(i).art)
                                        : runOf(was(i).art, trace_.textPart(was(i).part).run).style;
            const PathStyle now = isPath ? leadingStyle(is.art) : runOf(is.art, is.run).style;
            if (liesOnPage(style) && !difference.movesPaint) {
                return false; // the form would take its paint along
            }
            const ArtDifference scaled =
                compareStyles(moved(style, movement, isText), now, form_.base->paints, {});
            difference.lineWidth = scaled.lineWidth;
            difference.dash = scaled.dash;
            difference.pen = scaled.pen;
        }
        if (is.appearance.mask != SoftMask::null && !difference.masksMoved) {
            return false;
        }
        difference.shape = false;
        difference.place = false;
        return !difference.any();
    }

    const EditedForm& form_;
    const ContentTrace& trace_;
    std::vector<TraceIndex> compared_; // by group: the clip that its own was compared with
    TraceIndex lastClip_ = 0;
    EditedIndex lastGroup_ = 0;
    ChargedList<RealPoint> from_;
    ChargedList<RealPoint> to_;
};

} // namespace

void compareForm(EditedForm& form) {
    form.matching = matchArtwork(*form.base, form.inside, true);
    const Art box = form.base->form->box;
    const bool hasSameClips = (box == Art::null) == (form.clip == Art::null);
    form.isClipChanged = !hasSameClips || (box != Art::null && !sameClip(box, form.clip));
    const bool holdsSame = isComplete(form) && hasSameLayers(form) && !holdsWhole(form.inside);
    if (holdsSame && !form.isClipChanged && isUnchanged(form)) {
        return;
    }
    if (holdsSame && hasSameClips) {
        form.movement = Mover(form).movement();
    }
    form.isChanged = !form.movement;
}

} // namespace corvane
