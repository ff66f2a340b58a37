#include "fuzz/support/artwork_edit.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/geometry/transform_art.h"
#include "fuzz/support/text_edit.h"

#include <algorithm>
#include <array>

namespace corvane::fuzz {

namespace {

constexpr std::uint32_t mostEdits = 6;

/// What a document holds, compound paths as one object.
struct Inventory {
    std::vector<Art> objects;
    std::vector<Art> groups; ///< without those of layers
    std::vector<Art> clips;
};

bool isClip(const Document& document, Art art) {
    const Art parent = document.parent(art);
    return parent != Art::null && document.kind(parent) == ArtKind::group &&
           document.clipped(parent) && document.firstChild(parent) == art;
}

/// Takes a source in the page's content; what a form paints has others.
void addSource(const ArtSource& source, SourceSet& sources) {
    if (source.content == 0) {
        sources.emplace(source.start, source.end);
    }
}

/// Takes the sources of art: of a path its own, of text those of its runs, of what a form or a
/// glyph's procedure paints that of their group.
void addSources(const Document& document, Art art, SourceSet& sources) {
    for (Art each = art; each != Art::null; each = document.parent(each)) {
        if (const auto source = document.source(each)) {
            addSource(*source, sources);
        }
    }
    const std::int32_t runs = document.kind(art) == ArtKind::text ? document.textRunCount(art) : 0;
    for (std::int32_t i = 0; i < runs; ++i) {
        addSource(document.textRun(art, i).source, sources);
    }
}

/// The art that comes next within `top`, first of all what `art` holds.
Art nextWithin(const Document& document, Art top, Art art) {
    const bool isOpen = document.kind(art) == ArtKind::group;
    if (isOpen && document.firstChild(art) != Art::null) {
        return document.firstChild(art);
    }
    while (art != top && document.nextSibling(art) == Art::null) {
        art = document.parent(art);
    }
    return art == top ? Art::null : document.nextSibling(art);
}

Inventory inventory(const Document& document) {
    Inventory all;
    for (Layer layer = document.firstLayer(); layer != Layer::null;
         layer = document.nextLayer(layer)) {
        const Art top = document.layerArt(layer);
        for (Art art = nextWithin(document, top, top); art != Art::null;
             art = nextWithin(document, top, art)) {
            if (isClip(document, document.parent(art))) {
                continue; // a line of text that clips together with others
            }
            std::vector<Art>& list = isClip(document, art)                  ? all.clips
                                     : document.kind(art) == ArtKind::group ? all.groups
                                                                            : all.objects;
            list.push_back(art);
        }
    }
    return all;
}

class Editor {
public:
    Editor(Document& document, const Choose& choose) : document_(document), choose_(choose) {}

    void edit() {
        const Inventory all = inventory(document_);
        switch (choose_(6)) {
        case 0:
            return editAll(all);
        case 1:
            return addPath(all);
        case 2:
            return editGroup(all);
        default:
            if (!all.objects.empty()) {
                editObject(all, pick(all.objects));
            }
        }
    }

    SourceSet touched;

private:
    Art pick(const std::vector<Art>& art) {
        return art[choose_(static_cast<std::uint32_t>(art.size()))];
    }

    void touchOne(Art art) { addSources(document_, art, touched); }

    /// Art, all that it holds, and the clips around it.
    void touch(Art top) {
        for (Art art = top; art != Art::null; art = nextWithin(document_, top, art)) {
            touchOne(art);
        }
        touchAround(top);
    }

    /// Groups that have a source, too, since art in them is a part of theirs.
    void touchAround(Art art) {
        for (Art group = document_.parent(art); group != Art::null;
             group = document_.parent(group)) {
            touchOne(group);
            if (document_.kind(group) == ArtKind::group && document_.clipped(group)) {
                touchOne(document_.firstChild(group));
            }
        }
    }

    void editAll(const Inventory& all) {
        const std::uint32_t what = choose_(4);
        for (const std::vector<Art>* list : {&all.objects, &all.clips}) {
            for (const Art art : *list) {
                touch(art);
            }
        }
        switch (what) {
        case 0:
            for (const Art art : all.objects) {
                document_.dispose(art);
            }
            return;
        case 1:
            for (const std::vector<Art>* list : {&all.objects, &all.clips}) {
                for (const Art art : *list) {
                    loseSource(art);
                }
            }
            return;
        case 2:
            for (const Art art : all.objects) {
                document_.reorder(art, Placement::inFront, document_.firstChild(topOf(art)));
            }
            return;
        default:
            for (const Art art : all.objects) {
                transformArt(document_, art, offset());
            }
        }
    }

    RealMatrix offset() {
        return {.tx = static_cast<double>(choose_(200)) - 100,
                .ty = static_cast<double>(choose_(9))};
    }

    Art topOf(Art art) const { return document_.top(art); }

    /// As an editor that writes no attribute of ours.
    void loseSource(Art art) {
        if (document_.kind(art) == ArtKind::text) {
            TextEdit(document_, art).loseSources();
        } else {
            document_.setSource(art, lostSource);
        }
    }

    void addPath(const Inventory& all) {
        Art reference = document_.layerArt(document_.firstLayer());
        Placement placement = Placement::inside;
        if (!all.objects.empty()) {
            reference = pick(all.objects);
            touchAround(reference);
            placement = choose_(2) == 0 ? Placement::inFront : Placement::behind;
        }
        fillPath(document_.make(ArtKind::path, placement, reference));
    }

    /// Makes a triangle, or in one of eight cases a path without points.
    void fillPath(Art path) {
        const std::uint32_t form = choose_(8);
        PathStyle style;
        style.fillPaint = 1;
        style.fill.component[0] = static_cast<Fixed>(choose_(256) << 8);
        document_.setStyle(path, style);
        if (form == 7) {
            return;
        }
        const Fixed size = static_cast<Fixed>(1 + choose_(100)) * fixedOne;
        std::array<Segment, 3> corners;
        const std::array<Point, 3> points = {Point{0, 0}, Point{size, 0}, Point{size, size}};
        for (std::size_t i = 0; i < corners.size(); ++i) {
            corners[i].anchor = corners[i].in = corners[i].out = points[i];
        }
        document_.setSegmentCount(path, 3);
        document_.writeSegments(path, 0, corners);
        document_.setClosed(path, true);
    }

    void editGroup(const Inventory& all) {
        if (all.groups.empty()) {
            return;
        }
        const Art group = pick(all.groups);
        touch(group);
        const Art clip = document_.clipped(group) ? document_.firstChild(group) : Art::null;
        switch (choose_(6)) {
        case 0:
            document_.dispose(group);
            return;
        case 1:
            document_.setClipped(group, false);
            if (clip != Art::null) {
                document_.dispose(clip);
            }
            return;
        case 2:
            if (clip != Art::null) {
                transformArt(document_, clip, offset());
            }
            return;
        case 3:
            return moveArt(group, all);
        case 4:
            document_.duplicate(group, Placement::inFront, group);
            return;
        default:
            transformArt(document_, group, offset());
        }
    }

    void editObject(const Inventory& all, Art art) {
        touch(art);
        const std::uint32_t what = choose_(14);
        if (document_.kind(art) == ArtKind::text && (what < 2 || what > 12)) {
            return TextEdit(document_, art).edit(choose_);
        }
        switch (what) {
        case 0:
            return restyle(art, true);
        case 1:
            return restyle(art, false);
        case 2:
            transformArt(document_, art, offset());
            return;
        case 3:
            document_.dispose(art);
            return;
        case 4:
        case 5:
            return moveArt(art, all);
        case 6:
            document_.duplicate(art, Placement::inFront, art);
            return;
        case 7: {
            const Art copy = document_.duplicate(art, Placement::behind, art);
            transformArt(document_, copy, offset());
            return;
        }
        case 8:
            gather(art, false);
            return;
        case 9:
            gather(art, true);
            return;
        case 10:
            loseSource(art);
            return;
        case 11:
            if (const auto source = document_.source(art)) {
                document_.setSource(art, {.start = 0, .end = 0, .ordinal = source->ordinal});
            }
            return;
        case 12: {
            const Art layer = document_.layerArt(document_.addLayer({}));
            document_.setGroupLayer(layer, document_.contentLayers().add({.name = "N"}));
            document_.reorder(art, Placement::inside, layer);
            return;
        }
        default:
            return moveArt(art, all);
        }
    }

    void restyle(Art art, bool fills) {
        const Art path = document_.kind(art) == ArtKind::compound ? document_.firstChild(art) : art;
        if (path == Art::null) {
            return;
        }
        PathStyle style = document_.style(path);
        Colour& colour = fills ? style.fill : style.stroke;
        colour = {};
        colour.component[0] = static_cast<Fixed>(choose_(256) << 8);
        (fills ? style.fillPaint : style.strokePaint) =
            static_cast<std::uint8_t>(choose_(4) == 0 ? 0 : 1);
        style.lineWidth = fills ? style.lineWidth : static_cast<Fixed>(choose_(9)) * fixedOne;
        style.dashCount = fills ? style.dashCount : static_cast<std::int16_t>(choose_(2));
        style.dash[0] = fills ? style.dash[0] : 3 * fixedOne;
        style.rule = choose_(8) == 0 ? FillRule::evenOdd : style.rule;
        for (Art each = path; each != Art::null;
             each = each == art ? Art::null : document_.nextSibling(each)) {
            document_.setStyle(each, style);
        }
    }

    /// To another place in the order, in its group or in another one.
    void moveArt(Art art, const Inventory& all) {
        switch (choose_(5)) {
        case 0:
            if (const Art front = document_.previousSibling(art);
                front != Art::null && !isClip(document_, front)) {
                document_.reorder(art, Placement::inFront, front);
            }
            return;
        case 1:
            if (const Art back = document_.nextSibling(art); back != Art::null) {
                document_.reorder(art, Placement::behind, back);
            }
            return;
        case 2:
            document_.reorder(art, Placement::inside, topOf(art));
            return;
        case 3:
            if (const Art back = document_.lastChild(topOf(art)); back != art) {
                document_.reorder(art, Placement::behind, back);
            }
            return;
        default: {
            const Placement placement = choose_(2) == 0 ? Placement::inFront : Placement::behind;
            const Art reference = pick(all.objects);
            touchAround(reference);
            document_.reorder(art, placement, reference);
        }
        }
    }

    /// Makes a group of the object and perhaps of the one behind it.
    void gather(Art art, bool clips) {
        const Art group = document_.make(ArtKind::group, Placement::inFront, art);
        const Art next = document_.nextSibling(art);
        document_.reorder(art, Placement::inside, group);
        if (next != Art::null && choose_(2) == 0) {
            touch(next);
            document_.reorder(next, Placement::behind, art);
        }
        if (clips) {
            const Art clip = document_.make(ArtKind::path, Placement::inside, group);
            fillPath(clip);
            PathStyle style = document_.style(clip);
            style.clip = 1;
            style.fillPaint = 0;
            document_.setStyle(clip, style);
            document_.setClipped(group, true);
        }
    }

    Document& document_;
    const Choose& choose_;
};

} // namespace

SourceSet allSources(const Document& document) {
    const Inventory all = inventory(document);
    SourceSet sources;
    for (const std::vector<Art>* list : {&all.objects, &all.clips}) {
        for (const Art art : *list) {
            addSources(document, art, sources);
        }
    }
    return sources;
}

std::vector<Art> paintedArt(const Document& document) {
    return inventory(document).objects;
}

SourceSet editArtwork(Document& document, const Choose& choose) {
    Editor editor(document, choose);
    for (std::uint32_t count = choose(mostEdits); count > 0; --count) {
        try {
            editor.edit();
        } catch (const ArtworkError&) {
            // An edit that the artwork cannot take leaves it as it was.
        }
    }
    return std::move(editor.touched);
}

} // namespace corvane::fuzz
