#include "writer/patch/text/text_layout.h"

#include "runtime/fixed.h"
#include "writer/patch/compare/matching.h"
#include "writer/patch/text/text_run.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace corvane {

namespace {

class Layout {
public:
    Layout(const BaseContent& base, EditedArtwork& artwork, SetText& text)
        : base_(base), artwork_(artwork), text_(text) {}

    void run() {
        layOutAll(artwork_.objects);
        layOutAll(artwork_.clipRuns);
    }

private:
    void layOutAll(ChargedList<EditedObject>& objects) {
        for (EditedIndex first = 0; first < objects.size();) {
            EditedIndex end = first + 1;
            if (objects[first].kind == ArtKind::text) {
                while (end < objects.size() && objects[end].art == objects[first].art) {
                    ++end;
                }
                layOut(objects, first, end);
                putInOrder(objects, first, end);
            }
            first = end;
        }
    }

    void layOut(ChargedList<EditedObject>& objects, EditedIndex first, EditedIndex end) {
        std::vector<LineRun> runs;
        bool isLaidOut = false;
        for (EditedIndex i = first; i < end; ++i) {
            const EditedObject& object = objects[i];
            const TextRun run = runOf(object.art, object.run);
            runs.push_back({.run = run, .shownLength = shownLength(object, run)});
            isLaidOut = isLaidOut || runs.back().isTyped() || !run.decorations.empty();
        }
        const TextLine line = lineOf(objects[first].art);
        if (!isLaidOut && line.anchor != TextAnchor::middle && line.order == TextOrder::visual) {
            placeShown(objects, first, runs, line.anchor == TextAnchor::end);
            return;
        }
        const SetText::Index set = text_.add(line, runs);
        for (EditedIndex i = first; i < end; ++i) {
            const EditedIndex run = set + (i - first);
            objects[i].start = text_.startOf(run);
            objects[i].set = run;
        }
    }

    /// Runs of one line do not lie over one another, so those of the page may be painted in its
    /// order: words from the right are shown so, and the line begins with its left end.
    void putInOrder(ChargedList<EditedObject>& objects, EditedIndex first, EditedIndex end) {
        std::vector<EditedIndex> places;
        std::vector<std::pair<PaintedIndex, EditedObject>> known;
        for (EditedIndex i = first; i < end; ++i) {
            if (const PaintedIndex source = knownSource(base_, objects[i]); source != noSource) {
                places.push_back(i);
                known.emplace_back(source, objects[i]);
            }
        }
        std::ranges::stable_sort(known, {}, [](const auto& each) { return each.first; });
        for (std::size_t i = 0; i < places.size(); ++i) {
            objects[places[i]] = known[i].second;
        }
    }

    static void placeShown(ChargedList<EditedObject>& objects, EditedIndex first,
                           std::span<const LineRun> runs, bool isFromEnd) {
        double pen = 0;
        for (const LineRun& run : runs) {
            pen -= isFromEnd ? *run.shownLength : 0;
        }
        for (const LineRun& run : runs) {
            objects[first++].start = pen;
            pen += *run.shownLength;
        }
    }

    /// Nothing where its letters are not as the page shows them.
    std::optional<double> shownLength(const EditedObject& object, const TextRun& run) const {
        const PaintedIndex source = knownSource(base_, object);
        if (source == noSource) {
            return std::nullopt;
        }
        const PaintedArt& was = base_.trace.painted()[source];
        const ShownPart& part = base_.trace.textPart(was.part);
        if (compareText(base_, was, object).letters) {
            return std::nullopt;
        }
        const Fixed former = runOf(was.art, part.run).size;
        return former == 0 ? part.length
                           : part.length * realFromFixed(run.size) / realFromFixed(former);
    }

    const BaseContent& base_;
    EditedArtwork& artwork_;
    SetText& text_;
};

} // namespace

void layOutText(const BaseContent& base, EditedArtwork& artwork, SetText& text) {
    Layout(base, artwork, text).run();
}

} // namespace corvane
