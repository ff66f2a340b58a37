#include "writer/patch/base/edited_artwork.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/image/place_image.h"
#include "reader/text/show_text.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/layers.h"
#include "writer/art/style_works.h"
#include "writer/art/text/text_clip.h"
#include "writer/patch/base/base_content.h"
#include "writer/patch/form/edited_form.h"
#include "writer/patch/text/glyph_group.h"
#include "writer/patch/text/joined_text.h"

#include <deque>
#include <set>
#include <utility>

namespace corvane {

Appearance together(const Appearance& group, const Appearance& own) {
    if (group == Appearance()) {
        return own;
    }
    Appearance both = own;
    both.opacity *= group.opacity;
    both.blend = group.blend;
    both.mask = own.mask == SoftMask::null ? group.mask : own.mask;
    return both;
}

namespace {

class Lister {
public:
    Lister(EditedArtwork& page, const BaseContents& base, EditedForms& forms,
           const std::unordered_set<Art>& others)
        : base_(base), forms_(forms), others_(others), page_(page), artwork_(&page) {}

    void layer(Layer layer) {
        LayerInfo info;
        callHost(slot::getLayerInfo, layer, &info);
        isOfAnnotations_ = roleOf(layer) == LayerRole::annotations;
        if (!isOfAnnotations_ && leavesOut(layer, info)) {
            return;
        }
        const Art top = artOf(layer);
        const std::size_t before = page_.objects.size();
        pending_.push(top);
        for (ArtStep step; pending_.next(step);) {
            if (step.what == ArtStep::What::art) {
                visit(step.art);
            } else if (group_ != 0) {
                leaveGroup();
            } else {
                leaveForm();
            }
        }
        if (page_.objects.size() == before) {
            return;
        }
        if (layerOf(top) != ContentLayer::null) {
            return;
        }
        if (!isOfAnnotations_) {
            page_.layers.push_back(commentText(info.title));
        } else if (leavesOut(layer, info)) {
            while (page_.objects.size() > before) {
                page_.objects.pop();
            }
        }
    }

private:
    void visit(Art art) {
        if (others_.contains(art)) {
            return;
        }
        if (callHost(slot::checkUserAbort)) {
            failException(Exception::cancelled);
        }
        const ArtKind kind = artKind(art);
        appearance_ = {};
        if (hostHoldsAppearance()) {
            appearance_ = together(std::exchange(carried_, {}), appearanceOf(art));
        }
        switch (static_cast<std::int16_t>(kind)) {
        case 1:
            if ((isOfAnnotations_ && addAnnotation(art)) || enterForm(art) || addSourced(art)) {
                return;
            }
            [[fallthrough]];
        case 0:
            return enter(art, kind);
        case 2:
        case 3:
            return add(art, kind);
        case 4:
            return addText(art);
        case 5:
        case 6:
            return; // kinds that are not drawn
        case 7:
            if (hostHoldsImages()) {
                return add(art, kind);
            }
            [[fallthrough]];
        default:
            failException(Exception::type);
        }
    }

    /// An annotation is no object; a further copy of one is.
    bool addAnnotation(Art group) {
        const FormFacts form = formOf(group);
        if (form.content == 0 || !annotations_.insert({form.object, form.content}).second) {
            return false;
        }
        page_.annotations.push(group);
        return true;
    }

    /// What glyph procedures drew is one object, as long as it is paths and bitmaps alone.
    bool addSourced(Art group) {
        ArtSource source;
        callHost(slot::getArtSource, group, &source);
        std::uint8_t clipped = 0;
        callHost(slot::getGroupClipped, group, &clipped);
        if (source.ordinal < 0 || clipped != 0 || !isGlyphGroup(group)) {
            return false;
        }
        addParts(group);
        return true;
    }

    bool enterForm(Art group) {
        if (!base_.hasForms()) {
            return false;
        }
        const std::int32_t number = formOf(group).content;
        const BaseContent* const content = number > 0 ? base_.find(number) : nullptr;
        if (content == nullptr) {
            return false;
        }
        const Art clip = clipOf(group);
        if (clip != Art::null && isTextClip(clip)) {
            return false; // the form's own clip is a box
        }
        open_.push_back({.form = EditedForm{.group = group, .clip = clip, .base = content},
                         .group = group_,
                         .appearance = appearance_});
        artwork_ = &open_.back().form.inside;
        artwork_->groups.push({});
        group_ = 0;
        enterChildren(group, clip);
        return true;
    }

    void leaveForm() {
        OpenForm left = std::move(open_.back());
        open_.pop_back();
        for (const EditedObject& object : left.form.inside.objects.items()) {
            left.form.leaves += object.form != nullptr ? object.form->leaves : 1;
        }
        forms_.push_back(std::move(left.form));
        group_ = left.group;
        appearance_ = left.appearance;
        artwork_ = open_.empty() ? &page_ : &open_.back().form.inside;
        EditedForm& form = forms_.back();
        form.base->form->isWhole ? add(form.group, ArtKind::group, &form)
                                 : addParts(form.group, &form);
    }

    /// What is painted as no more than its parts: its look is that of a group around it.
    void addParts(Art art, EditedForm* form = nullptr) {
        const EditedIndex around = group_;
        if (appearance_ != Appearance()) {
            push({.outer = group_, .appearance = std::exchange(appearance_, {})});
        }
        add(art, ArtKind::group, form);
        group_ = around;
    }

    void add(Art art, ArtKind kind, EditedForm* form = nullptr) {
        EditedObject object{.art = art,
                            .kind = kind,
                            .form = form,
                            .group = group_,
                            .source = {},
                            .appearance = appearance_};
        callHost(slot::getArtSource, art, &object.source);
        artwork_->objects.push(object);
    }

    void addText(Art text) {
        if (base_.sourcesMeanIt() && hostHoldsText()) {
            joined_.divide(open_.empty() ? base_.page() : *open_.back().form.base, text);
        }
        addRuns(text, artwork_->objects);
    }

    void addRuns(Art text, ChargedList<EditedObject>& to) {
        if (!hostHoldsText()) {
            return;
        }
        std::int32_t count = 0;
        callHost(slot::getTextRunCount, text, &count);
        for (std::int32_t run = 0; run < count; ++run) {
            TextRun letters;
            callHost(slot::getTextRun, text, run, &letters);
            to.push({.art = text,
                     .kind = ArtKind::text,
                     .group = group_,
                     .source = letters.source,
                     .appearance = appearance_,
                     .run = run});
        }
    }

    /// Whether the one thing in a group can have the group's look.
    bool mayCarry(Art held) const {
        return appearance_ != Appearance() &&
               (appearance_.mask == SoftMask::null || appearanceOf(held).mask == SoftMask::null);
    }

    void enter(Art art, ArtKind kind) {
        const Art clip = kind == ArtKind::group ? clipOf(art) : Art::null;
        const ContentLayer layer = kind == ArtKind::group ? layerOf(art) : ContentLayer::null;
        if (layer != ContentLayer::null) {
            push({.outer = group_, .layer = layer});
        }
        const Art held = clip == Art::null ? firstChild(art) : nextSibling(clip);
        const bool isAlone = held != Art::null && nextSibling(held) == Art::null;
        const bool carries = isAlone && mayCarry(held);
        const Appearance own = carries ? Appearance() : appearance_;
        if (layer == ContentLayer::null || clip != Art::null || own != Appearance()) {
            EditedGroup group{.outer = group_,
                              .clip = clip,
                              .appearance = own,
                              .isWithin = layer != ContentLayer::null};
            if (clip != Art::null && isTextClip(clip)) {
                addClipRuns(group);
            }
            push(group);
        }
        if (carries) {
            carried_ = appearance_;
        }
        pending_.enter(held, ArtStep::What::leave);
    }

    void addClipRuns(EditedGroup& group) {
        ChargedList<EditedObject>& runs = artwork_->clipRuns;
        group.firstRun = static_cast<EditedIndex>(runs.size());
        const ChargedList<Art> texts = clipTexts(group.clip);
        for (const Art text : texts.items()) {
            addRuns(text, runs);
        }
        group.endRun = static_cast<EditedIndex>(runs.size());
    }

    void push(EditedGroup group) {
        const auto index = static_cast<EditedIndex>(artwork_->groups.size());
        group.whole = artwork_->groups[group.outer].whole;
        if (group.whole == 0 && group.isLooked()) {
            group.whole = index;
        }
        artwork_->groups.push(group);
        group_ = index;
    }

    void leaveGroup() {
        const EditedGroup& left = artwork_->groups[group_];
        group_ = left.isWithin ? artwork_->groups[left.outer].outer : left.outer;
    }

    static Art clipOf(Art group) {
        std::uint8_t clipped = 0;
        callHost(slot::getGroupClipped, group, &clipped);
        return clipped != 0 ? firstChild(group) : Art::null;
    }

    void enterChildren(Art group, Art clip) {
        pending_.enter(clip == Art::null ? firstChild(group) : nextSibling(clip),
                       ArtStep::What::leave);
    }

    /// A form that is being listed, and the list to go on with behind it.
    struct OpenForm {
        EditedForm form;
        EditedIndex group = 0;
        Appearance appearance;
    };

    const BaseContents& base_;
    EditedForms& forms_;
    const std::unordered_set<Art>& others_;
    EditedArtwork& page_;
    EditedArtwork* artwork_;    // of the page, or of the innermost open form
    std::deque<OpenForm> open_; // from the outermost
    std::set<std::pair<std::int32_t, std::int32_t>> annotations_;
    bool isOfAnnotations_ = false;
    ArtStack pending_;
    JoinedText joined_;
    EditedIndex group_ = 0;
    Appearance appearance_; ///< of the art at hand
    Appearance carried_;    ///< of the group around the art to come, which it has to itself
};

} // namespace

EditedArtwork listArtwork(const BaseContents& base, EditedForms& forms,
                          const std::unordered_set<Art>& others) {
    EditedArtwork artwork;
    artwork.groups.push({});
    Lister lister(artwork, base, forms, others);
    ChargedList<Layer> layers = listLayers();
    while (!layers.empty()) {
        lister.layer(layers.pop());
    }
    return artwork;
}

} // namespace corvane
