#include "writer/patch/compare/matching.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/losses.h"
#include "writer/art/outline.h"
#include "writer/image/image_works.h"
#include "writer/patch/compare/look.h"
#include "writer/patch/compare/look_difference.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/form/edited_form.h"
#include "writer/patch/text/glyph_group.h"
#include "writer/patch/text/text_run.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

namespace {

bool isPath(ArtKind kind) {
    return kind == ArtKind::path || kind == ArtKind::compound;
}

bool isText(const PaintedArt& painted) {
    return painted.setting != 0;
}

bool isPath(const PaintedArt& painted) {
    return !isText(painted) && !painted.isImage && !painted.isForm;
}

/// Forms are found in another way.
bool isOfKind(const PaintedArt& painted, const EditedObject& object) {
    return object.form == nullptr && (painted.isImage   ? object.kind == ArtKind::placed
                                      : isPath(painted) ? isPath(object.kind)
                                      : painted.isDrawn ? object.kind == ArtKind::group
                                                        : object.kind == ArtKind::text);
}

ArtDifference differenceOf(const EditedForm& form) {
    ArtDifference difference;
    difference.place = form.movement.has_value();
    difference.inside = form.isChanged;
    return difference;
}

/// What drew the form, if it was drawn in this content.
PaintedIndex sourceOf(const BaseContent& base, const EditedForm& form) {
    if (form.base->around != &base) {
        return noSource;
    }
    const std::span<const PaintedArt> painted = base.trace.painted();
    const auto at =
        std::ranges::lower_bound(painted, form.base->form->event, {}, &PaintedArt::event);
    return static_cast<PaintedIndex>(at - painted.begin());
}

ObjectLook lookOfPath(Art art, const Appearance& appearance) {
    const PathStyle style = leadingStyle(art);
    return {appearance, style.fillPaint != 0, style.strokePaint != 0};
}

ObjectLook lookOfRun(Art text, std::int32_t number, Appearance appearance) {
    const TextRun run = runOf(text, number);
    appearance.fillOpacity *= run.fillOpacity;
    appearance.strokeOpacity *= run.strokeOpacity;
    return {appearance, run.style.fillPaint != 0, run.style.strokePaint != 0};
}

ObjectLook lookOfPage(const BaseContent& base, const PaintedArt& was) {
    const Appearance appearance = appearanceOf(was.art);
    if (artKind(was.art) == ArtKind::path || artKind(was.art) == ArtKind::compound) {
        return lookOfPath(was.art, appearance);
    }
    return isText(was) && !was.isDrawn
               ? lookOfRun(was.art, base.trace.textPart(was.part).run, appearance)
               : ObjectLook{appearance};
}

ObjectLook lookOfObject(const EditedObject& object) {
    if (isPath(object.kind)) {
        return lookOfPath(object.art, object.appearance);
    }
    return object.kind == ArtKind::text ? lookOfRun(object.art, object.run, object.appearance)
                                        : ObjectLook{object.appearance};
}

/// Whether its mask was set around the content, where no object can take it along.
bool isMaskedAround(const BaseContent& base, const PaintedArt& was) {
    const SoftMask mask = appearanceOf(was.art).mask;
    return base.form != nullptr && mask != SoftMask::null && mask == base.form->inherited.mask;
}

/// How the object moved, where it did, and may take a mask along.
std::optional<RealMatrix> movementIn(const BaseContent& base, const PaintedArt& was,
                                     const EditedObject& object, const ArtDifference& difference) {
    if (object.appearance.mask == SoftMask::null || isMaskedAround(base, was)) {
        return std::nullopt;
    }
    if (object.form != nullptr) {
        return object.form->movement;
    }
    if (difference.shape) {
        return movementOf(was.art, object.art);
    }
    if (!difference.place) {
        return std::nullopt;
    }
    return was.isDrawn   ? movementOf(was.art, object.art)
           : isText(was) ? movementOfText(base, was, object)
           : was.isImage ? std::optional(movementOfImage(was.art, object.art))
                         : std::nullopt;
}

class Matcher {
public:
    Matcher(const BaseContent& base, const EditedArtwork& artwork)
        : base_(base), artwork_(artwork) {
        charge_.resize(
            static_cast<std::int64_t>(artwork.objects.size() * sizeof(MatchedObject) +
                                      base.trace.painted().size() * sizeof(EditedIndex)));
        matching_.objects.resize(artwork.objects.size());
        matching_.owners.assign(base.trace.painted().size(), noSource);
    }

    Matching match(bool sourcesMeanIt) {
        matchEach([](const EditedObject& object) { return object.shown; });
        if (sourcesMeanIt) {
            matchEach([&](const EditedObject& object) { return sourceOf(base_, object); });
            matchEach([&](const EditedObject& object) { return byNumber(object); });
        }
        matchByLook();
        matchImages();
        return std::move(matching_);
    }

private:
    PaintedIndex byNumber(const EditedObject& object) const {
        const ArtSource& source = object.source;
        const bool isNumber =
            source.end == 0 && source.ordinal >= 0 && source.content == base_.number &&
            static_cast<std::size_t>(source.ordinal) < base_.trace.painted().size();
        const auto number = static_cast<PaintedIndex>(source.ordinal);
        const bool isFree = isNumber && matching_.owners[number] == noSource &&
                            isOfKind(base_.trace.painted()[number], object);
        return isFree ? number : noSource;
    }

    template <class Find>
    void matchEach(const Find& find) {
        for (EditedIndex i = 0; i < matching_.objects.size(); ++i) {
            if (matching_.objects[i].source == noSource) {
                const PaintedIndex source = find(artwork_.objects[i]);
                if (source != noSource) {
                    claim(i, source);
                }
            }
        }
    }

    void claim(EditedIndex i, PaintedIndex source) {
        MatchedObject& object = matching_.objects[i];
        object.source = source;
        object.difference = compareObject(base_, source, artwork_.objects[i]);
        EditedIndex& owner = matching_.owners[source];
        if (owner == noSource) {
            owner = i;
            return;
        }
        MatchedObject& former = matching_.objects[owner];
        if (former.difference.any() && !object.difference.any()) {
            former.isCopy = true;
            owner = i;
        } else {
            object.isCopy = true;
        }
    }

    void matchByLook() {
        Looks left;
        const auto isLeft = [&](EditedIndex i) {
            return matching_.objects[i].source == noSource && isPath(artwork_.objects[i].kind);
        };
        bool any = false;
        for (EditedIndex i = 0; i < matching_.objects.size() && !any; ++i) {
            any = isLeft(i);
        }
        if (!any) {
            return;
        }
        ZoneCharge charge;
        std::size_t count = 0;
        for (PaintedIndex source = static_cast<PaintedIndex>(matching_.owners.size());
             source-- > 0;) {
            if (matching_.owners[source] == noSource && isPath(base_.trace.painted()[source])) {
                if (count++ % chargeStep == 0) {
                    charge.resize(static_cast<std::int64_t>((count + chargeStep) * nodeSize));
                }
                left[lookOf(artOf(base_, source)).cells(0, 0, 0, 0)].push_back(source);
            }
        }
        for (EditedIndex i = 0; i < matching_.objects.size() && count > 0; ++i) {
            if (isLeft(i)) {
                takeLook(i, left);
            }
        }
    }

    /// Sources of one look, the first on the page last: equal objects keep their order.
    using Looks = std::unordered_map<LookCells, std::vector<PaintedIndex>, LookCells::Hash>;
    static constexpr std::size_t chargeStep = 4096;
    static constexpr std::size_t nodeSize = 128;
    /// Sources of one look that are compared with an object: all that lie the same way.
    static constexpr int mostCompared = 32;

    /// Looks in the cells around the object's first and last point.
    void takeLook(EditedIndex i, Looks& left) {
        const Look look = lookOf(artwork_.objects[i].art);
        for (unsigned sides = 0; sides < 16; ++sides) {
            const auto step = [&](unsigned bit) {
                return (sides >> bit & 1U) != 0 ? Look::room : -Look::room;
            };
            const auto found = left.find(look.cells(step(0), step(1), step(2), step(3)));
            if (found != left.end() && takeFrom(i, found->second)) {
                return;
            }
        }
    }

    bool takeFrom(EditedIndex i, std::vector<PaintedIndex>& sources) {
        int compared = 0;
        for (auto at = sources.rbegin(); at != sources.rend() && compared < mostCompared;
             ++at, ++compared) {
            if (!compareArt(artOf(base_, *at), artwork_.objects[i].art, base_.paints).any()) {
                matching_.objects[i] = {
                    .source = *at, .difference = compareObject(base_, *at, artwork_.objects[i])};
                matching_.owners[*at] = i;
                sources.erase(std::next(at).base());
                return true;
            }
        }
        return false;
    }

    /// What is left of images has the picture as its source: of several drawings of it, one that
    /// lies there and is not taken, or else it is a copy.
    void matchImages() {
        std::unordered_map<std::string, std::vector<PaintedIndex>> drawings;
        for (EditedIndex i = 0; i < matching_.objects.size(); ++i) {
            const EditedObject& object = artwork_.objects[i];
            if (matching_.objects[i].source != noSource || object.kind != ArtKind::placed) {
                continue;
            }
            if (drawings.empty()) {
                drawings = drawingsOfPage();
            }
            const auto same = drawings.find(imageKey(placedImage(object.art)));
            if (same != drawings.end()) {
                claim(i, drawingFor(object.art, same->second));
            }
        }
    }

    std::unordered_map<std::string, std::vector<PaintedIndex>> drawingsOfPage() const {
        std::unordered_map<std::string, std::vector<PaintedIndex>> drawings;
        for (PaintedIndex source = 0; source < base_.trace.painted().size(); ++source) {
            if (base_.trace.painted()[source].isImage) {
                drawings[imageKey(placedImage(artOf(base_, source)))].push_back(source);
            }
        }
        drawings.erase(std::string());
        return drawings;
    }

    PaintedIndex drawingFor(Art art, std::span<const PaintedIndex> drawings) const {
        int compared = 0;
        for (const PaintedIndex source : drawings) {
            if (matching_.owners[source] == noSource && ++compared <= mostCompared &&
                !compareImages(artOf(base_, source), art).any()) {
                return source;
            }
        }
        return drawings.front();
    }

    const BaseContent& base_;
    const EditedArtwork& artwork_;
    ZoneCharge charge_;
    Matching matching_;
};

} // namespace

Matching matchArtwork(const BaseContent& base, const EditedArtwork& artwork, bool sourcesMeanIt) {
    return Matcher(base, artwork).match(sourcesMeanIt);
}

PaintedIndex sourceOf(const BaseContent& base, const EditedObject& object) {
    if (object.form != nullptr) {
        return sourceOf(base, *object.form);
    }
    const ArtSource& source = object.source;
    if (source.end <= 0 || source.content != base.number) {
        return noSource;
    }
    const std::span<const PaintedArt> painted = base.trace.painted();
    const auto eventOfArt = [&](const PaintedArt& art) -> const TraceEvent& {
        return base.trace.events()[art.event];
    };
    const auto isIt = [&](const PaintedArt& art) {
        return eventOfArt(art).start == source.start && eventOfArt(art).end == source.end &&
               isOfKind(art, object);
    };
    // Several parts of what one operator shows differ in their numbers.
    const auto number = static_cast<std::size_t>(source.ordinal);
    if (source.ordinal >= 0 && number < painted.size() && isIt(painted[number])) {
        return static_cast<PaintedIndex>(number);
    }
    const auto at = std::ranges::lower_bound(painted, source.start, {}, [&](const PaintedArt& art) {
        return std::int64_t{eventOfArt(art).start};
    });
    const bool isHere = at != painted.end() && isIt(*at);
    return isHere ? static_cast<PaintedIndex>(at - painted.begin()) : noSource;
}

PaintedIndex knownSource(const BaseContent& base, const EditedObject& object) {
    return object.shown != notSet ? object.shown : sourceOf(base, object);
}

ArtDifference compareObject(const BaseContent& base, PaintedIndex source,
                            const EditedObject& object) {
    const PaintedArt& was = base.trace.painted()[source];
    ArtDifference difference = was.isForm    ? differenceOf(*object.form)
                               : was.isDrawn ? compareGlyphs(was.art, object.art, base.paints)
                               : isText(was) ? compareText(base, was, object)
                               : was.isImage ? compareImages(was.art, object.art)
                                             : compareArt(was.art, object.art, base.paints);
    if (hostHoldsAppearance()) {
        const ObjectLook former = lookOfPage(base, was);
        const ObjectLook look = lookOfObject(object);
        compareLooks(former, look, base.masks, movementIn(base, was, object, difference),
                     difference);
        if (difference.image && former.appearance.mask == SoftMask::null &&
            (eventOf(base.trace, source).behind.settings & softMaskSetting) != 0) {
            difference.look.mask = look.appearance.mask; // the image had one of its own
        }
    }
    return difference;
}

const TraceEvent& eventOf(const ContentTrace& trace, PaintedIndex source) {
    return trace.events()[trace.painted()[source].event];
}

Art artOf(const BaseContent& base, PaintedIndex source) {
    return base.trace.painted()[source].art;
}

} // namespace corvane
